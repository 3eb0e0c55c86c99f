// Owns `vantor monitor`: events between the user's programs and what came of them, as it happens.
#include <Platform/Monitor.h>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <map>
#include <optional>
#include <utility>

#include "Capture.h"
#include "Codes.h"
#include "Commands.h"
#include "EventText.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Json.h"
#include "NearNames.h"
#include "Output.h"
#include "Target.h"
#include "Vocabulary.h"

namespace cli {
namespace {

constexpr UInt32 kLookForInterruptAfter = 200;  // milliseconds
constexpr size_t kMostOpen = 10'000;

class Watch {
  public:
    Watch() { ThrowIfFailed(PlatformMonitorOpen(&mMonitor), "watch the events"); }
    ~Watch() { PlatformMonitorClose(mMonitor); }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    bool Next(PlatformWatchedEvent* outEvent) {
        const OSErr err = PlatformMonitorNext(mMonitor, kLookForInterruptAfter, outEvent);
        if (err == errAETimeout) return false;
        ThrowIfFailed(err, "read the next event");
        return true;
    }
    UInt32 Missed() { return PlatformMonitorMissed(mMonitor); }

  private:
    PlatformMonitorRef mMonitor = nullptr;
};

// An event that was shown and has not come to its end.
struct Open {
    UInt64 number;
    std::string codes;  // and its name
};

// The words of the programs that were sent to. They are looked for once.
class Dictionaries {
  public:
    const Vocabulary& Of(const ProcessSerialNumber& inProgram) {
        const UInt64 number = UInt64{inProgram.highLongOfPSN} << 32 | inProgram.lowLongOfPSN;
        const auto known = mVocabularies.find(number);
        if (known != mVocabularies.end()) return known->second;
        if (mVocabularies.size() == kMostPrograms) mVocabularies.erase(mVocabularies.begin());
        return mVocabularies.emplace(number, VocabularyOf(inProgram)).first->second;
    }

  private:
    static constexpr size_t kMostPrograms = 256;
    std::map<UInt64, Vocabulary> mVocabularies;
};

class View {
  public:
    explicit View(const MonitorRequest& inRequest) : mRequest(inRequest) {
        if (!inRequest.capture.empty()) mCapture.emplace(inRequest.capture);
    }

    void Show(const PlatformWatchedEvent& inEvent) {
        if (inEvent.kind == kPlatformEventSent)
            ShowSent(inEvent);
        else
            ShowEnd(inEvent);
        std::fflush(stdout);
    }

    // Counted for all programs together: which of them it was about, nobody knows.
    void ShowMissed(UInt32 inCount) {
        if (inCount == 0) return;
        if (mCapture) {
            CaptureRecord record;
            record.error = static_cast<SInt32>(inCount);
            mCapture->Write(record);
        }
        if (mRequest.json)
            PrintJson({{"event", "missed"}, {"count", inCount}});
        else
            std::printf("%s missed.\n", Counted(inCount).c_str());
        std::fflush(stdout);
    }

  private:
    using Key = std::pair<UInt32, UInt64>;  // sender and exchange

    static Key KeyOf(const PlatformWatchedEvent& inEvent) {
        return {inEvent.sender.lowLongOfPSN, inEvent.exchange};
    }
    static std::string Counted(UInt32 inCount) {
        return inCount == 1 ? "1 event" : std::to_string(inCount) + " events";
    }
    const Vocabulary& WordsOf(const PlatformWatchedEvent& inEvent) {
        return mRequest.isPlain ? mNone : mDictionaries.Of(inEvent.target);
    }
    static const EventTerm* TermOf(const PlatformWatchedEvent& inEvent, const Vocabulary& inWords) {
        return inWords.FindEvent(ClassOf(inEvent.event), IDOf(inEvent.event));
    }
    bool IsWanted(const PlatformWatchedEvent& inEvent);
    void ShowSent(const PlatformWatchedEvent& inEvent);
    void ShowEnd(const PlatformWatchedEvent& inEvent);
    void Keep(const PlatformWatchedEvent& inEvent, UInt64 inNumber);

    const MonitorRequest& mRequest;
    std::optional<CaptureWriter> mCapture;
    std::map<Key, Open> mOpen;
    UInt64 mCount = 0;
    Dictionaries mDictionaries;
    const Vocabulary mNone;
};

std::string Named(ConstStringPtr inName, const ProcessSerialNumber& inNumber) {
    const std::string name = Shown(MacRomanText(inName));
    return (name.empty() ? "?" : name) + " (" + std::to_string(inNumber.lowLongOfPSN) + ")";
}

// Local time of day, to the millisecond.
std::string TimeOfDay(SInt64 inNanoseconds) {
    const time_t seconds = inNanoseconds / 1'000'000'000;
    tm parts{};
    localtime_r(&seconds, &parts);
    char text[32];
    const int milliseconds = static_cast<int>(inNanoseconds / 1'000'000 % 1000);
    std::snprintf(text, sizeof text, "%02d:%02d:%02d.%03d", parts.tm_hour, parts.tm_min,
                  parts.tm_sec, milliseconds);
    return text;
}

double Milliseconds(SInt64 inNanoseconds) {
    return std::round(static_cast<double>(inNanoseconds) / 1e3) / 1e3;
}

Json JsonOf(ConstStringPtr inName, const ProcessSerialNumber& inNumber) {
    return {{"number", inNumber.lowLongOfPSN}, {"name", MacRomanText(inName)}};
}

const char* ReplyModeOf(SInt32 inMode) {
    if (inMode == kAENoReply) return "none";
    return inMode == kAEQueueReply ? "queue" : "wait";
}

bool View::IsWanted(const PlatformWatchedEvent& inEvent) {
    if (mRequest.eventClass && *mRequest.eventClass != ClassOf(inEvent.event)) return false;
    if (mRequest.eventID && *mRequest.eventID != IDOf(inEvent.event)) return false;
    if (!mRequest.name.empty()) {
        const EventTerm* const term = TermOf(inEvent, mDictionaries.Of(inEvent.target));
        if (term == nullptr || !IsSameName(term->name, mRequest.name)) return false;
    }
    return mRequest.process.empty() ||
           IsTarget(mRequest.process, inEvent.sender, MacRomanText(inEvent.senderName)) ||
           IsTarget(mRequest.process, inEvent.target, MacRomanText(inEvent.targetName));
}

std::string Characters(ConstStringPtr inName) {
    return {reinterpret_cast<const char*>(inName + 1), inName[0]};
}

OSType CreatorOf(const ProcessSerialNumber& inNumber) {
    ProcessInfoRec info = {};
    info.processInfoLength = 60;
    return GetProcessInformation(&inNumber, &info) == noErr ? info.processSignature : 0;
}

void View::Keep(const PlatformWatchedEvent& inEvent, UInt64 inNumber) {
    if (!mCapture) return;
    CaptureRecord record;
    record.kind = static_cast<CaptureKind>(inEvent.kind);
    record.error = inEvent.error;
    record.number = inNumber;
    record.time = inEvent.time;
    record.elapsed = inEvent.elapsed;
    record.sender = inEvent.sender.lowLongOfPSN;
    record.target = inEvent.target.lowLongOfPSN;
    record.targetCreator = CreatorOf(inEvent.target);
    record.replyMode = inEvent.replyMode;
    record.senderName = Characters(inEvent.senderName);
    record.targetName = Characters(inEvent.targetName);
    if (inEvent.kind != kPlatformEventEnded) record.event = BytesOfEvent(inEvent.event);
    mCapture->Write(record);
}

void View::ShowSent(const PlatformWatchedEvent& inEvent) {
    if (!IsWanted(inEvent)) return;
    // What never comes to its end was missed, or its sender was killed.
    if (mOpen.size() == kMostOpen) mOpen.erase(mOpen.begin());
    const Vocabulary& words = WordsOf(inEvent);
    const EventTerm* const term = TermOf(inEvent, words);
    const std::string name = term != nullptr ? Shown(term->name) : std::string();
    const std::string codes = QuotedCode(ClassOf(inEvent.event)) + '\\' +
                              QuotedCode(IDOf(inEvent.event)) +
                              (name.empty() ? "" : '<' + name + '>');
    mOpen[KeyOf(inEvent)] = {++mCount, codes};
    Keep(inEvent, mCount);
    if (mRequest.json) {
        Json json = {{"event", "sent"},
                     {"number", mCount},
                     {"time", inEvent.time},
                     {"sender", JsonOf(inEvent.senderName, inEvent.sender)},
                     {"target", JsonOf(inEvent.targetName, inEvent.target)},
                     {"class", CodeText(ClassOf(inEvent.event))},
                     {"id", CodeText(IDOf(inEvent.event))}};
        if (!name.empty()) json["name"] = name;
        json["reply"] = ReplyModeOf(inEvent.replyMode);
        json["parameters"] = ParametersJson(inEvent.event, words, term);
        PrintJson(json);
    } else
        std::printf("%s #%llu %s -> %s  %s %s\n", TimeOfDay(inEvent.time).c_str(),
                    static_cast<unsigned long long>(mCount),
                    Named(inEvent.senderName, inEvent.sender).c_str(),
                    Named(inEvent.targetName, inEvent.target).c_str(), codes.c_str(),
                    ParametersOf(inEvent.event, words, term).c_str());
}

// Of an event that is not shown, or was sent before the watching began, the end is not shown
// either.
void View::ShowEnd(const PlatformWatchedEvent& inEvent) {
    const auto found = mOpen.find(KeyOf(inEvent));
    if (found == mOpen.end()) return;
    const Open open = found->second;
    mOpen.erase(found);
    Keep(inEvent, open.number);
    const bool isAnswered = inEvent.kind == kPlatformEventAnswered;
    if (mRequest.json) {
        Json json = {{"event", isAnswered ? "answered" : "ended"},
                     {"number", open.number},
                     {"time", inEvent.time},
                     {"milliseconds", Milliseconds(inEvent.elapsed)},
                     {"error", inEvent.error}};
        if (isAnswered)
            json["parameters"] = ParametersJson(inEvent.event, WordsOf(inEvent), nullptr);
        return PrintJson(json);
    }
    std::string outcome = isAnswered ? "answered" : inEvent.error == noErr ? "sent" : "failed";
    if (inEvent.error != noErr) outcome += " with error " + std::to_string(inEvent.error);
    std::printf("%s #%llu %s %s in %.3f ms%s%s\n", TimeOfDay(inEvent.time).c_str(),
                static_cast<unsigned long long>(open.number), open.codes.c_str(), outcome.c_str(),
                Milliseconds(inEvent.elapsed), isAnswered ? "  " : "",
                isAnswered ? ParametersOf(inEvent.event, WordsOf(inEvent), nullptr).c_str() : "");
}

}  // namespace

void MonitorEvents(const MonitorRequest& inRequest) {
    Watch watch;
    View view(inRequest);
    std::fprintf(stderr, "Watching; Ctrl-C ends it.\n");
    while (InterruptCount() == 0) {
        PlatformWatchedEvent event;
        if (watch.Next(&event)) {
            view.Show(event);
            AEDisposeDesc(&event.event);
        }
        view.ShowMissed(watch.Missed());
    }
}

}  // namespace cli
