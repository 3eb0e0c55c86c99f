// Owns what is told of a send to those who watch, and which answers from the queue belong to it.
#include "apple_event_manager/watching/watched_send.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <mutex>
#include <optional>

#include "apple_event_manager/internal.h"
#include "apple_event_manager/watching/watch_links.h"
#include "posix/across_forks.h"
#include "process_manager/process_table.h"

namespace carbon {

namespace {

constexpr size_t kMostQueued = 1024;

// A watched event whose answer is to come by the queue.
struct QueuedSend {
    UInt64 exchange;
    SInt16 returnID;
    ProcessSerialNumber target;
    SInt64 start;
};

std::atomic<size_t> gQueuedCount = 0;
std::mutex gQueuedLock;
const HeldAcrossForks sHeld(gQueuedLock);
std::deque<QueuedSend> gQueued;
std::atomic<UInt64> gLastExchange = 0;

SInt64 Nanoseconds(std::chrono::nanoseconds inTime) {
    return inTime.count();
}

SInt64 Now() {
    return Nanoseconds(std::chrono::steady_clock::now().time_since_epoch());
}

void CopyName(const Str63& inName, Str31 outName) {
    const size_t length = std::min<size_t>(inName[0], sizeof(Str31) - 1);
    outName[0] = static_cast<UInt8>(length);
    std::copy_n(&inName[1], length, &outName[1]);
}

void DescribeProcesses(const ProcessSerialNumber& inTarget, WatchHeader* outHeader) {
    const ProcessEntry& self = CurrentProcess();
    outHeader->sender = self.psn.lowLongOfPSN;
    CopyName(self.name, outHeader->senderName);
    const auto target = FindProcess(inTarget);
    outHeader->target = target ? target->psn.lowLongOfPSN : inTarget.lowLongOfPSN;
    if (target) CopyName(target->name, outHeader->targetName);
}

WatchHeader MakeHeader(WatchKind inKind, UInt64 inExchange, const ProcessSerialNumber& inTarget,
                       SInt64 inStart) {
    WatchHeader header{inKind};
    header.exchange = inExchange;
    header.time = Nanoseconds(std::chrono::system_clock::now().time_since_epoch());
    header.elapsed = Now() - inStart;
    DescribeProcesses(inTarget, &header);
    return header;
}

void TellAnswer(UInt64 inExchange, const ProcessSerialNumber& inTarget, SInt64 inStart,
                const AppleEvent& inReply) {
    TheWatchLinks().Tell(MakeHeader(WatchKind::kAnswered, inExchange, inTarget, inStart),
                         EventBytes(inReply));
}

void Expect(const QueuedSend& inSend) {
    const std::lock_guard lock(gQueuedLock);
    if (gQueued.size() == kMostQueued) gQueued.pop_front();
    gQueued.push_back(inSend);
    gQueuedCount = gQueued.size();
}

template <typename Test>
std::optional<QueuedSend> TakeExpected(Test inTest) {
    const std::lock_guard lock(gQueuedLock);
    const auto found = std::find_if(gQueued.begin(), gQueued.end(), inTest);
    if (found == gQueued.end()) return {};
    const QueuedSend send = *found;
    gQueued.erase(found);
    gQueuedCount = gQueued.size();
    return send;
}

// Whoever is watched goes on, whatever happens to those who watch.
template <typename Body>
void Sheltered(Body inBody) noexcept {
    try {
        inBody();
    } catch (const std::bad_alloc&) {
        WatchPage& page = TheWatchPage();
        for (auto& missed : page.missed) ++missed;
    }
}

}  // namespace

void WatchedSend::Begin(const AppleEvent& inEvent, const ProcessSerialNumber& inTarget,
                        AESendMode inReplyMode) {
    mIsWatched = true;
    mExchange = ++gLastExchange;
    mTarget = inTarget;
    mReplyMode = inReplyMode;
    mStart = Now();
    Sheltered([&] {
        if (mReplyMode == kAEQueueReply) {
            const SInt16 returnID = EventAttribute16(inEvent, keyReturnIDAttr).value_or(0);
            Expect({mExchange, returnID, mTarget, mStart});
        }
        WatchHeader header = MakeHeader(WatchKind::kSent, mExchange, mTarget, mStart);
        header.elapsed = 0;
        header.replyMode = mReplyMode;
        TheWatchLinks().Tell(header, EventBytes(inEvent));
    });
}

void WatchedSend::End(OSErr inResult, const AppleEvent* inReply) {
    mIsWatched = false;
    Sheltered([&] {
        if (inResult == noErr && mReplyMode == kAEQueueReply) return;  // The answer will tell.
        if (inResult == noErr && mReplyMode == kAEWaitReply)
            return TellAnswer(mExchange, mTarget, mStart, *inReply);
        if (mReplyMode == kAEQueueReply)
            TakeExpected([&](const QueuedSend& send) { return send.exchange == mExchange; });
        WatchHeader header = MakeHeader(WatchKind::kEnded, mExchange, mTarget, mStart);
        header.error = inResult;
        TheWatchLinks().Tell(header, {});
    });
}

void NoteQueuedReply(const AppleEvent& inReply) {
    if (gQueuedCount == 0) return;
    Sheltered([&] {
        const SInt16 returnID = EventAttribute16(inReply, keyReturnIDAttr).value_or(0);
        const auto send =
            TakeExpected([&](const QueuedSend& expected) { return expected.returnID == returnID; });
        if (send) TellAnswer(send->exchange, send->target, send->start, inReply);
    });
}

}  // namespace carbon
