// Looks words up, and refuses those that are none.
#include "Vocabulary.h"

#include <algorithm>
#include <cctype>

#include "Codes.h"
#include "Failure.h"
#include "NearNames.h"

namespace cli {
namespace {

constexpr OSType kInheritance = 'c@#^';

[[noreturn]] void ThrowUsage(const std::string& inSentence) {
    throw Failure(inSentence, paramErr, kBadUsage);
}

// A name that can stand in angle brackets and is known for one there.
bool IsShowable(const std::string& inName) {
    if (inName.empty()) return false;
    const auto first = static_cast<unsigned char>(inName.front());
    return (std::isalpha(first) != 0 || first >= 0x80) &&
           inName.find_first_of("<>\"{}[]") == inName.npos && Shown(inName) == inName;
}

bool HasEnds(const std::string& inWord, char inBegin, char inEnd) {
    return inWord.size() > 2 && inWord.front() == inBegin && inWord.back() == inEnd;
}

// What stands between the ends.
std::string Bare(const std::string& inWord) {
    return inWord.substr(1, inWord.size() - 2);
}

std::string Joined(const std::vector<std::string>& inNames, const char* inLast) {
    std::string text;
    for (size_t i = 0; i < inNames.size(); ++i)
        text += (i == 0 ? "" : i + 1 == inNames.size() ? inLast : ", ") + inNames[i];
    return text;
}

}  // namespace

Vocabulary::Vocabulary(const std::string& inWhose, Suites inSuites)
    : mWhose(inWhose),
      mWhyEmpty(inWhose + " has no dictionary of names"),
      mSuites(std::move(inSuites)) {
    for (const auto& suite : mSuites) {
        for (const auto& event : suite.events)
            mEvents.insert({{event.eventClass, event.code}, &event});
        for (const auto& term : suite.classes) {
            Add(Kind::kClass, 0, term.name, term.code);
            for (const auto& property : term.properties)
                Add(Kind::kProperty, term.code, property.name, property.code);
        }
        for (const auto& term : suite.comparisons) Add(Kind::kComparison, 0, term.name, term.code);
        for (const auto& enumeration : suite.enumerations)
            for (const auto& value : enumeration.values)
                Add(Kind::kEnumerator, enumeration.code, value.name, value.code);
    }
}

void Vocabulary::Add(Kind inKind, OSType inOwner, const std::string& inName, OSType inCode) {
    if (inName.empty() || inCode == kInheritance) return;
    mWords.push_back({inKind, inCode, inOwner, inName});
    if (IsShowable(inName)) mNames.insert({{inKind, inCode}, inName});
}

const Vocabulary::Kinds& Vocabulary::KindsAt(WordPlace inPlace) {
    static const Kinds kOfClass = {Kind::kClass}, kOfProperty = {Kind::kProperty},
                       kOfType = {Kind::kProperty, Kind::kClass, Kind::kEnumerator},
                       kOfValue = {Kind::kEnumerator, Kind::kComparison, Kind::kClass,
                                   Kind::kProperty};
    switch (inPlace) {
        case WordPlace::kClass:
            return kOfClass;
        case WordPlace::kProperty:
            return kOfProperty;
        case WordPlace::kType:
            return kOfType;
        case WordPlace::kValue:
            return kOfValue;
    }
    return kOfValue;
}

const EventTerm* Vocabulary::FindEvent(AEEventClass inClass, AEEventID inID) const {
    const auto found = mEvents.find({inClass, inID});
    return found != mEvents.end() ? found->second : nullptr;
}

const EventTerm* Vocabulary::FindEvent(const std::string& inName) const {
    const std::string name = HasEnds(inName, '<', '>') ? Bare(inName) : inName;
    const EventTerm* event = nullptr;
    for (const auto& [codes, term] : mEvents) {
        if (!IsSameName(term->name, name)) continue;
        if (event != nullptr)
            ThrowUsage("'" + name + "' may mean " + QuotedCode(event->eventClass) + ' ' +
                       QuotedCode(event->code) + " or " + QuotedCode(codes.first) + ' ' +
                       QuotedCode(codes.second) + "; write the codes");
        event = term;
    }
    return event;
}

void Vocabulary::RefuseEvent(const std::string& inName) const {
    std::vector<std::string> names;
    for (const auto& [codes, term] : mEvents) names.push_back(term->name);
    Refuse(inName, "event", names);
}

std::string Vocabulary::NameOf(WordPlace inPlace, OSType inCode) const {
    for (const Kind kind : KindsAt(inPlace))
        if (const auto found = mNames.find({kind, inCode}); found != mNames.end())
            return found->second;
    return {};
}

bool Vocabulary::Knows(WordPlace inPlace, OSType inCode) const {
    return std::ranges::any_of(KindsAt(inPlace), [&](Kind kind) {
        return std::ranges::any_of(mWords, [&](const Word& inWord) {
            return inWord.kind == kind && inWord.code == inCode;
        });
    });
}

std::vector<const Vocabulary::Word*> Vocabulary::Named(Kind inKind,
                                                       const std::string& inName) const {
    std::vector<const Word*> words;
    for (const auto& word : mWords)
        if (word.kind == inKind && IsSameName(word.name, inName)) words.push_back(&word);
    return words;
}

std::string Vocabulary::Described(const Word& inWord) const {
    const std::string owner =
        inWord.kind == Kind::kProperty ? NameOf(WordPlace::kClass, inWord.owner) : std::string();
    return QuotedCode(inWord.code) + (owner.empty() ? "" : " of " + owner);
}

OSType Vocabulary::OnlyOne(const std::string& inName,
                           const std::vector<const Word*>& inWords) const {
    std::map<OSType, std::string> meanings;
    for (const Word* const word : inWords) meanings.insert({word->code, Described(*word)});
    if (meanings.size() == 1) return inWords.front()->code;
    std::vector<std::string> texts;
    for (const auto& [code, text] : meanings) texts.push_back(text);
    ThrowUsage("'" + inName + "' may mean " + Joined(texts, " or ") + "; write the code");
}

OSType Vocabulary::CodeOfName(WordPlace inPlace, const std::string& inName, OSType inOwner) const {
    for (const Kind kind : KindsAt(inPlace)) {
        auto words = Named(kind, inName);
        if (words.empty()) continue;
        const auto isOfOthers = [&](const Word* inWord) { return inWord->owner != inOwner; };
        if (inOwner != 0 && !std::ranges::all_of(words, isOfOthers))
            std::erase_if(words, isOfOthers);
        return OnlyOne(inName, words);
    }
    std::vector<std::string> names;
    for (const auto& word : mWords)
        if (std::ranges::find(KindsAt(inPlace), word.kind) != KindsAt(inPlace).end())
            names.push_back(word.name);
    const bool isClass = inPlace == WordPlace::kClass, isProperty = inPlace == WordPlace::kProperty;
    Refuse(inName, isClass ? "class" : isProperty ? "property" : "value", names);
}

OSType Vocabulary::CodeFor(WordPlace inPlace, const std::string& inWord, OSType inOwner) const {
    if (HasEnds(inWord, '\'', '\'')) return CodeNamed(inWord);
    if (HasEnds(inWord, '<', '>')) return CodeOfName(inPlace, Bare(inWord), inOwner);
    const bool isCode = IsCode(inWord);
    if (isCode && Knows(inPlace, CodeNamed(inWord))) return CodeNamed(inWord);
    const bool isName = std::ranges::any_of(
        KindsAt(inPlace), [&](Kind kind) { return !Named(kind, inWord).empty(); });
    return isCode && !isName ? CodeNamed(inWord) : CodeOfName(inPlace, inWord, inOwner);
}

OSType Vocabulary::CodeForParameter(const EventTerm& inEvent, const std::string& inWord) const {
    const bool isName = HasEnds(inWord, '<', '>'), isCode = !isName && IsCode(inWord);
    const std::string name = isName ? Bare(inWord) : inWord;
    std::vector<std::string> names;
    for (const auto& parameter : inEvent.parameters)
        if (isCode && parameter.code == CodeNamed(inWord)) return parameter.code;
    for (const auto& parameter : inEvent.parameters) {
        if (IsSameName(parameter.name, name)) return parameter.code;
        names.push_back(parameter.name);
    }
    if (isCode) return CodeNamed(inWord);
    Refuse(name, "parameter of this event", names);
}

void Vocabulary::Refuse(const std::string& inName, const char* inWhat,
                        const std::vector<std::string>& inNames) const {
    const std::string quoted = "'" + Shown(inName) + "'";
    if (IsEmpty())
        ThrowUsage(quoted + " is no code: codes have one to four characters, and " + mWhyEmpty);
    std::vector<std::string> near;
    for (const auto& name : NearNames(inName, inNames)) near.push_back("'" + Shown(name) + "'");
    ThrowUsage(mWhose + " has no " + inWhat + " called " + quoted +
               (near.empty() ? "; vantor dictionary lists the names"
                             : "; it has " + Joined(near, " and ")));
}

std::string NameOfParameter(const EventTerm* inEvent, AEKeyword inKey) {
    if (inEvent != nullptr)
        for (const auto& parameter : inEvent->parameters)
            if (parameter.code == inKey && IsShowable(parameter.name)) return parameter.name;
    return {};
}

}  // namespace cli
