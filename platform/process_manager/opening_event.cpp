// Owns the way of the first event into a launched program.
#include "process_manager/opening_event.h"

#include <Carbon/AppleEvents.h>
#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "apple_event_manager/handling/event_queue.h"
#include "apple_event_manager/internal.h"
#include "apple_event_manager/limits.h"
#include "apple_event_manager/transport/received.h"
#include "posix/os_err.h"
#include "posix/runtime_folder.h"

namespace carbon {
namespace {

std::string EventPath(UInt32 inNumber) {
    std::string folder;
    char name[16];
    std::snprintf(name, sizeof name, "/%x.event", inNumber);
    return RuntimeFolder(&folder) == noErr ? folder + name : std::string();
}

OSErr EventFromBytes(const std::vector<UInt8>& inBytes, AppleEvent* outEvent) {
    if (DescFromBytes(Buffer(inBytes), outEvent) != noErr) return paramErr;
    if (IsAppleEvent(*outEvent)) return noErr;
    AEDisposeDesc(outEvent);
    return paramErr;
}

// False when nothing was kept, or something that is no event.
bool TakeKept(const std::string& inPath, AppleEvent* outEvent) {
    std::ifstream file(inPath, std::ios::binary);
    if (!file) return false;
    const std::vector<UInt8> bytes((std::istreambuf_iterator<char>(file)), {});
    unlink(inPath.c_str());
    return EventFromBytes(bytes, outEvent) == noErr;
}

}  // namespace

OSErr EventFromParameters(const AppParameters& inParameters, AppleEvent* outEvent) {
    if (inParameters.messageLength > UInt32(kMaximumMessageSize)) return paramErr;
    const auto* body = reinterpret_cast<const UInt8*>(&inParameters + 1);
    return EventFromBytes({body, body + inParameters.messageLength}, outEvent);
}

OSErr MakeOpeningEvent(const AppleEvent* inKept, AppleEvent* outEvent) {
    if (inKept != nullptr) return AEDuplicateDesc(inKept, outEvent);
    return AECreateAppleEvent(kCoreEventClass, kAEOpenApplication, nullptr, kAutoGenerateReturnID,
                              kAnyTransactionID, outEvent);
}

OSErr KeepOpeningEvent(UInt32 inNumber, const AppleEvent& inEvent) {
    const auto bytes = EventBytes(inEvent);
    std::ofstream file(EventPath(inNumber), std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    file.close();
    if (file) return noErr;
    const OSErr err = OSErrFromErrno(errno);
    DropOpeningEvent(inNumber);
    return err == noErr ? OSErr(ioErr) : err;
}

void DropOpeningEvent(UInt32 inNumber) {
    unlink(EventPath(inNumber).c_str());
}

OSErr PostOpeningEvent(UInt32 inNumber, const ProcessSerialNumber& inLauncher) {
    AppleEvent event = {};
    const bool kept = TakeKept(EventPath(inNumber), &event);
    OSErr err = kept ? OSErr(noErr) : MakeOpeningEvent(nullptr, &event);
    if (err == noErr) err = MarkReceived(&event, {inLauncher, kAELocalProcess, false, 0, 0});
    if (err == noErr)
        return TheEventQueue().PostAppleEvent(event, {}) ? OSErr(noErr) : OSErr(memFullErr);
    AEDisposeDesc(&event);
    return err;
}

}  // namespace carbon
