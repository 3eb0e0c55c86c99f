// A monitor for the length of a test, and what it has seen.
#pragma once

#include <Platform/Monitor.h>
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "support/TestEvents.h"

// What a monitor saw, without the bytes of the event.
struct Seen {
    UInt32 kind;
    SInt32 error;
    UInt64 exchange;
    UInt32 sender, target;
    std::string senderName, targetName;
    SInt64 time, elapsed;
    SInt32 replyMode;
    AEEventID id;   // of the event
    SInt32 value;   // its direct object, as a number
    Size textSize;  // bytes of its direct object
};

inline AEEventID IdOf(const AppleEvent& inEvent) {
    UInt32 id = 0;
    AEGetAttributePtr(&inEvent, keyEventIDAttr, typeType, nullptr, &id, sizeof id, nullptr);
    return EndianU32_BtoN(id);
}

class TestMonitor {
  public:
    TestMonitor() { mResult = PlatformMonitorOpen(&mMonitor); }
    ~TestMonitor() { PlatformMonitorClose(mMonitor); }
    TestMonitor(const TestMonitor&) = delete;
    TestMonitor& operator=(const TestMonitor&) = delete;

    OSErr Result() const { return mResult; }
    UInt32 Missed() { return PlatformMonitorMissed(mMonitor); }

    // Fewer when they do not come within half a minute.
    std::vector<Seen> Take(size_t inCount) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        std::vector<Seen> all;
        while (all.size() < inCount && std::chrono::steady_clock::now() < deadline)
            TakeOne(100, &all);
        return all;
    }
    // What is there now.
    std::vector<Seen> TakeWaiting() {
        std::vector<Seen> all;
        while (TakeOne(0, &all)) {
        }
        return all;
    }

  private:
    bool TakeOne(UInt32 inMilliseconds, std::vector<Seen>* ioAll) {
        PlatformWatchedEvent event;
        if (PlatformMonitorNext(mMonitor, inMilliseconds, &event) != noErr) return false;
        Size size = 0;
        AESizeOfParam(&event.event, keyDirectObject, nullptr, &size);
        ioAll->push_back({event.kind, event.error, event.exchange, event.sender.lowLongOfPSN,
                          event.target.lowLongOfPSN, Text(event.senderName), Text(event.targetName),
                          event.time, event.elapsed, event.replyMode, IdOf(event.event),
                          LongIn(event.event, keyDirectObject), size});
        AEDisposeDesc(&event.event);
        return true;
    }
    static std::string Text(const Str31 inName) {
        return {reinterpret_cast<const char*>(&inName[1]), inName[0]};
    }

    PlatformMonitorRef mMonitor = nullptr;
    OSErr mResult;
};
