// Owns `vantor send`: any event to any program.
#include "Codes.h"
#include "Commands.h"
#include "Failure.h"
#include "Message.h"
#include "Target.h"

namespace cli {
namespace {

using Words = std::vector<std::string>;

struct EventToSend {
    AEEventClass eventClass = 0;
    AEEventID id = 0;
    const EventTerm* term = nullptr;  // null: the dictionary has no such event
    std::string parameters;
};

// PARAMETERS have a colon outside of quotes, or are empty.
bool IsParameters(const std::string& inWord) {
    bool isQuoted = false;
    for (const char c : inWord) {
        if (c == '\'') isQuoted = !isQuoted;
        if (c == ':' && !isQuoted) return true;
    }
    return inWord.empty();
}

EventToSend OfTerm(const EventTerm& inTerm) {
    return {inTerm.eventClass, inTerm.code, &inTerm, {}};
}

// CLASS ID, or the words of a name. Codes win.
EventToSend Named(const Words& inWords, const Vocabulary& inVocabulary) {
    if (inWords.size() == 2 && IsCode(inWords[0]) && IsCode(inWords[1])) {
        EventToSend event{CodeNamed(inWords[0]), CodeNamed(inWords[1]), nullptr, {}};
        event.term = inVocabulary.FindEvent(event.eventClass, event.id);
        return event;
    }
    std::string name;
    for (const auto& word : inWords) name += (name.empty() ? "" : " ") + word;
    if (const EventTerm* const term = inVocabulary.FindEvent(name)) return OfTerm(*term);
    if (inWords.size() == 1 && IsCode(name) && name.front() != '<' && inVocabulary.IsEmpty())
        throw Failure("The ID is missing: an event is a CLASS and an ID, or a name", paramErr,
                      kBadUsage);
    inVocabulary.RefuseEvent(name);
}

EventToSend ReadEvent(Words inWords, const Vocabulary& inVocabulary) {
    std::string parameters;
    if (inWords.size() > 1 && IsParameters(inWords.back())) {
        parameters = inWords.back();
        inWords.pop_back();
    } else if (inWords.size() == 3 && IsCode(inWords[0]) && IsCode(inWords[1])) {
        parameters = inWords.back();  // what they are is told with a mark under the mistake
        inWords.pop_back();
    }
    EventToSend event = Named(inWords, inVocabulary);
    event.parameters = parameters;
    return event;
}

void Make(const EventToSend& inEvent, const Vocabulary& inVocabulary, bool inJson,
          const ProcessSerialNumber& inTarget, StAEDescriptor& outEvent) {
    MakeEvent(inTarget, inEvent.eventClass, inEvent.id, outEvent);
    AddParameters({inEvent.parameters, inVocabulary, inEvent.term, inJson}, outEvent);
}

}  // namespace

void SendEvent(const SendRequest& inRequest) {
    StAEDescriptor trial, message, reply;
    const Vocabulary words = VocabularyOf(inRequest.target);
    const EventToSend event = ReadEvent(inRequest.event, words);
    // A mistake in the text is one whether or not the program runs.
    Make(event, words, inRequest.json, {0, kCurrentProcess}, trial);
    Make(event, words, inRequest.json, TargetNamed(inRequest.target), message);
    Send(message, {inRequest.awaitsReply, inRequest.seconds}, reply);
    if (!inRequest.awaitsReply) return;
    const Vocabulary none;
    Show(reply, inRequest.isPlain ? none : words, inRequest.json);
    ThrowIfRefused(reply);
}

}  // namespace cli
