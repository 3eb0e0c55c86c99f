// Owns `vantor replay`: captured requests sent once more, and where the answers differ.
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <thread>

#include "Capture.h"
#include "Commands.h"
#include "EventText.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Json.h"
#include "Output.h"
#include "Target.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/process/UProcess.h"

namespace cli {
namespace {

using SteadyClock = std::chrono::steady_clock;

constexpr SInt32 kLongestWait = 60 * 60;   // ticks, for one answer
constexpr OSType kNoCreator = 0x3F3F3F3F;  // question marks: of a program without a bundle
constexpr std::chrono::milliseconds kLookForInterruptAfter(100);

struct Request {
    CaptureRecord sent;
    std::optional<CaptureRecord> end;  // the answer, or how the send ended
};

struct Capture {
    std::vector<Request> requests;
    SInt64 missed = 0;
};

// What a target of others sends is what those others made it do, and it will do it again.
bool IsConsequence(const CaptureRecord& inSent, const std::set<UInt32>& inTargets) {
    return inSent.sender == inSent.target || inTargets.count(inSent.sender) != 0;
}

// The whole file is read before anything is sent: of a damaged one nothing is.
Capture ReadCapture(const std::string& inPath) {
    std::ifstream file(inPath, std::ios::binary);
    if (!file) throw Failure(inPath + " cannot be read.", fnfErr, kBadSource);
    CaptureReader reader(file);
    Capture capture;
    std::map<UInt64, size_t> places;
    std::set<UInt32> targets;
    while (auto record = reader.Next()) {
        if (record->kind == CaptureKind::kMissed) {
            capture.missed += record->error;
        } else if (record->kind == CaptureKind::kSent) {
            if (IsConsequence(*record, targets)) continue;
            targets.insert(record->target);
            places[record->number] = capture.requests.size();
            capture.requests.push_back({std::move(*record), {}});
        } else if (const auto place = places.find(record->number); place != places.end()) {
            capture.requests[place->second].end = std::move(*record);
        }
    }
    return capture;
}

// The one that runs, else one that is launched.
ProcessSerialNumber ApplicationOf(OSType inCreator) {
    ProcessSerialNumber psn = {0, kNoProcess};
    try {
        if (UProcess::Launch(inCreator, 'APPL', launchContinue | launchDontSwitch, nullptr, &psn))
            return psn;
    } catch (const std::exception& error) {
        throw Failure(
            "The application '" + Code(inCreator) + "' could not be started: " + error.what() + ".",
            procNotFound);
    }
    throw Failure("There is no application '" + Code(inCreator) + "' to send the events to.",
                  procNotFound);
}

bool IsOpening(const AEDesc& inEvent) {
    AEEventClass eventClass = 0;
    AEEventID id = 0;
    return MoreAEExtractClassAndID(&inEvent, &eventClass, &id) == noErr &&
           eventClass == AEEventClass(kCoreEventClass) && id == AEEventID(kAEOpenApplication);
}

class Replay {
  public:
    explicit Replay(const ReplayRequest& inRequest) : mRequest(inRequest) {}

    void Run();

  private:
    ProcessSerialNumber TargetOf(const CaptureRecord& inSent);
    void WaitFor(SInt64 inSinceFirst);
    void SendOne(const Request& inRequest);
    void Compare(const Request& inRequest, OSErr inResult, const AppleEvent& inReply);
    void Show(const Request& inRequest, const std::string& inThen, const std::string& inNow);
    void ShowTotal(const Capture& inCapture);

    const ReplayRequest& mRequest;
    std::map<UInt32, ProcessSerialNumber> mTargets;  // captured number, number now
    SteadyClock::time_point mStart = SteadyClock::now();
    UInt64 mSent = 0, mDifferent = 0;
};

ProcessSerialNumber Replay::TargetOf(const CaptureRecord& inSent) {
    const auto known = mTargets.find(inSent.target);
    if (known != mTargets.end()) return known->second;
    if (!mRequest.target.empty()) return mTargets[inSent.target] = TargetNamed(mRequest.target);
    if (inSent.targetCreator == 0 || inSent.targetCreator == kNoCreator)
        throw Failure("The captured target has no creator to find it by; name one with --to.",
                      procNotFound, kBadUsage);
    return mTargets[inSent.target] = ApplicationOf(inSent.targetCreator);
}

// Requests keep their distances: what one of them started goes on by itself.
void Replay::WaitFor(SInt64 inSinceFirst) {
    const auto until = mStart + std::chrono::nanoseconds(inSinceFirst);
    while (SteadyClock::now() < until) {
        if (InterruptCount() > 0) throw Failure("Interrupted.", userCanceledErr, kInterrupted);
        std::this_thread::sleep_for(
            std::min<SteadyClock::duration>(until - SteadyClock::now(), kLookForInterruptAfter));
    }
}

std::string Outcome(SInt32 inError, const std::string& inParameters) {
    return inError == noErr ? inParameters : "error " + std::to_string(inError);
}

void Replay::Show(const Request& inRequest, const std::string& inThen, const std::string& inNow) {
    ++mDifferent;
    if (mRequest.json)
        return PrintJson({{"event", "different"},
                          {"number", inRequest.sent.number},
                          {"captured", inThen},
                          {"now", inNow}});
    std::printf("#%llu was answered %s, now %s\n",
                static_cast<unsigned long long>(inRequest.sent.number), inThen.c_str(),
                inNow.c_str());
    std::fflush(stdout);
}

// Only what both times there was to compare.
void Replay::Compare(const Request& inRequest, OSErr inResult, const AppleEvent& inReply) {
    if (!inRequest.end) return;
    const CaptureRecord& then = *inRequest.end;
    std::string thenText = Outcome(then.error, "{}");
    if (then.kind == CaptureKind::kAnswered) {
        StAEDescriptor answer;
        EventFromBytes(then.event, answer);
        thenText = ParametersOf(answer, {}, nullptr);
    }
    const bool isAnswered = inResult == noErr && inReply.descriptorType != typeNull;
    const std::string nowText =
        isAnswered ? ParametersOf(inReply, {}, nullptr) : Outcome(inResult, "{}");
    if (thenText != nowText) Show(inRequest, thenText, nowText);
}

void Replay::SendOne(const Request& inRequest) {
    StAEDescriptor event, reply;
    EventFromBytes(inRequest.sent.event, event);
    const ProcessSerialNumber psn = TargetOf(inRequest.sent);
    if (IsOpening(event)) return;  // launching the target has sent one, or it was open
    const UInt32 address[2] = {EndianU32_NtoB(psn.highLongOfPSN), EndianU32_NtoB(psn.lowLongOfPSN)};
    ThrowIfFailed(
        AEPutAttributePtr(event, keyAddressAttr, typeProcessSerialNumber, address, sizeof address),
        "address a captured event");
    const bool waits = inRequest.sent.replyMode != kAENoReply;
    const OSErr result = AESend(event, reply, waits ? kAEWaitReply : kAENoReply, kAENormalPriority,
                                kLongestWait, IdleUntilInterrupt, nullptr);
    if (result == errAEWaitCanceled) throw Failure("Interrupted.", userCanceledErr, kInterrupted);
    ++mSent;
    Compare(inRequest, result, reply);
}

void Replay::ShowTotal(const Capture& inCapture) {
    if (mRequest.json)
        return PrintJson({{"event", "done"},
                          {"sent", mSent},
                          {"different", mDifferent},
                          {"missing", inCapture.missed}});
    std::printf("%llu events sent, %llu answered otherwise.\n",
                static_cast<unsigned long long>(mSent),
                static_cast<unsigned long long>(mDifferent));
    if (inCapture.missed > 0)
        std::printf("%lld things were missed when they were captured.\n",
                    static_cast<long long>(inCapture.missed));
}

void Replay::Run() {
    const Capture capture = ReadCapture(mRequest.file);
    if (!capture.requests.empty()) TargetOf(capture.requests.front().sent);
    mStart = SteadyClock::now();
    for (const Request& request : capture.requests) {
        WaitFor(request.sent.time - capture.requests.front().sent.time);
        SendOne(request);
    }
    ShowTotal(capture);
}

}  // namespace

void ReplayEvents(const ReplayRequest& inRequest) {
    Replay(inRequest).Run();
}

}  // namespace cli
