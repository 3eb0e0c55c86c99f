// Owns the calls of Platform/Monitor.h.
#include <Carbon/AppleEvents.h>
#include <Carbon/Endian.h>
#include <Carbon/MacErrors.h>
#include <Platform/Monitor.h>

#include <cstring>
#include <memory>

#include "apple_event_manager/data/access.h"
#include "apple_event_manager/internal.h"
#include "apple_event_manager/watching/monitor_port.h"

struct OpaquePlatformMonitor {
    carbon::MonitorPort port;
};

namespace carbon {

namespace {

SInt32 ErrorIn(const AppleEvent& inAnswer) {
    const auto number = EventParameter(inAnswer, keyErrorNumber);
    if (!number) return noErr;
    SInt32 error = 0;
    AEGetParamPtr(&inAnswer, keyErrorNumber, typeSInt32, nullptr, &error, sizeof error, nullptr);
    return static_cast<SInt32>(EndianU32_BtoN(static_cast<UInt32>(error)));
}

void Describe(const Sighting& inSighting, PlatformWatchedEvent* outEvent) {
    const WatchHeader& header = inSighting.header;
    *outEvent = {};
    outEvent->kind = static_cast<UInt32>(header.kind);
    outEvent->error =
        header.kind == WatchKind::kAnswered ? ErrorIn(inSighting.event) : header.error;
    outEvent->exchange = header.exchange;
    outEvent->sender = {0, header.sender};
    outEvent->target = {0, header.target};
    std::memcpy(outEvent->senderName, header.senderName, sizeof header.senderName);
    std::memcpy(outEvent->targetName, header.targetName, sizeof header.targetName);
    outEvent->time = header.time;
    outEvent->elapsed = header.elapsed;
    outEvent->replyMode = header.replyMode;
    outEvent->event = inSighting.event;
}

}  // namespace

}  // namespace carbon

using namespace carbon;

OSErr PlatformMonitorOpen(PlatformMonitorRef* outMonitor) {
    if (!outMonitor) return paramErr;
    *outMonitor = nullptr;
    return Guarded([&] {
        auto monitor = std::make_unique<OpaquePlatformMonitor>();
        const OSErr err = monitor->port.Open();
        if (!err) *outMonitor = monitor.release();
        return err;
    });
}

void PlatformMonitorClose(PlatformMonitorRef monitor) {
    delete monitor;
}

OSErr PlatformMonitorNext(PlatformMonitorRef monitor, UInt32 milliseconds,
                          PlatformWatchedEvent* outEvent) {
    if (!monitor || !outEvent) return paramErr;
    return Guarded([&] {
        const auto sighting =
            monitor->port.Next(Clock::now() + std::chrono::milliseconds(milliseconds));
        if (!sighting) return OSErr{errAETimeout};
        Describe(*sighting, outEvent);
        return OSErr{noErr};
    });
}

UInt32 PlatformMonitorMissed(PlatformMonitorRef monitor) {
    return monitor ? monitor->port.TakeMissed() : 0;
}
