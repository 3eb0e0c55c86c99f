// A program that answers the events of class 'Test', each in its own way.
//
//   event_server [--late MS] [--deaf] [--stays] [--asks NUMBER]
//
// Prints the low word of its serial number once it can be sent to. --late waits before its first
// Carbon call; --deaf never runs an event loop; --stays says yes to quitting and goes on; --asks
// has it ask another server, which answers after 2 s, once it has left its loop.
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "support/TestEvents.h"

namespace {

AppleEvent gHeldEvent, gHeldReply;
SInt32 gCount = 0;

OSErr Echo(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    OwnedDesc value;
    const OSErr err = AEGetParamDesc(inEvent, keyDirectObject, typeWildCard, &value);
    return err ? err : AEPutParamDesc(ioReply, keyDirectObject, &value);
}

OSErr Fail(const AppleEvent*, AppleEvent* ioReply, SInt32 inWay) {
    if (inWay != 0) PutLong(ioReply, keyErrorNumber, errAENoSuchObject);
    return inWay == 1 ? OSErr{noErr} : OSErr{errAEEventFailed};
}

OSErr Slow(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    usleep(static_cast<useconds_t>(LongIn(*inEvent, keyDirectObject)) * 1000);
    return Echo(inEvent, ioReply, 0);
}

OSErr Attributes(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    PutLong(ioReply, 'from', static_cast<SInt32>(SenderOf(*inEvent).lowLongOfPSN));
    for (const AEKeyword key : {keyEventSourceAttr, keyInteractLevelAttr, keyTimeoutAttr,
                                keyReturnIDAttr, keyTransactionIDAttr})
        PutLong(ioReply, key, LongAttribute(*inEvent, key));
    DescType type = 0;
    Size size = 0;
    AESizeOfAttribute(inEvent, keyAddressAttr, &type, &size);
    PutLong(ioReply, 'type', static_cast<SInt32>(type));
    PutLong(ioReply, 'size', size);
    return noErr;
}

OSErr Hold(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    gHeldEvent = *inEvent;
    gHeldReply = *ioReply;
    return AESuspendTheCurrentEvent(inEvent);
}

OSErr Free(const AppleEvent*, AppleEvent* ioReply, SInt32) {
    PutLong(&gHeldReply, keyDirectObject, 7);
    return PutLong(ioReply, keyDirectObject,
                   AEResumeTheCurrentEvent(&gHeldEvent, &gHeldReply, kAENoDispatch, 0));
}

OSErr Reset(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    for (SInt32 i = LongIn(*inEvent, keyDirectObject); i > 0; --i) {
        usleep(100'000);
        if (const OSErr err = AEResetTimer(ioReply)) return err;
    }
    return Echo(inEvent, ioReply, 0);
}

// Passes the question on to another server.
OSErr Relay(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    OwnedDesc event, answer;
    MakeEvent(Numbered(static_cast<UInt32>(LongIn(*inEvent, 'peer'))), 'echo', &event);
    PutLong(&event, keyDirectObject, LongIn(*inEvent, keyDirectObject));
    const OSErr err =
        AESend(&event, &answer, kAEWaitReply, kAENormalPriority, kNoTimeOut, nullptr, nullptr);
    return err ? err : PutLong(ioReply, keyDirectObject, LongIn(answer, keyDirectObject));
}

OSErr Bulk(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    const std::string text(static_cast<size_t>(LongIn(*inEvent, keyDirectObject)), 'b');
    return PutText(ioReply, keyDirectObject, text);
}

OSErr Measure(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    Size size = 0;
    AESizeOfParam(inEvent, keyDirectObject, nullptr, &size);
    return PutLong(ioReply, keyDirectObject, size);
}

OSErr Count(const AppleEvent*, AppleEvent* ioReply, SInt32 inAdd) {
    gCount += inAdd;
    return inAdd ? OSErr{noErr} : PutLong(ioReply, keyDirectObject, gCount);
}

OSErr Interact(const AppleEvent*, AppleEvent* ioReply, SInt32) {
    return PutLong(ioReply, keyDirectObject,
                   AEInteractWithUser(kAEDefaultTimeout, nullptr, nullptr));
}

OSErr Die(const AppleEvent*, AppleEvent*, SInt32 inCleanly) {
    if (inCleanly) _exit(0);
    return static_cast<OSErr>(raise(SIGKILL));
}

OSErr Stay(const AppleEvent*, AppleEvent*, SInt32) {
    return noErr;
}

OSErr AskBeforeGoing(UInt32 inOther) {
    OwnedDesc event, answer;
    MakeEvent(Numbered(inOther), 'slow', &event);
    PutLong(&event, keyDirectObject, 2000);
    return AESend(&event, &answer, kAEWaitReply, kAENormalPriority, kNoTimeOut, nullptr, nullptr);
}

void InstallHandlers() {
    const struct {
        AEEventID id;
        AEEventHandlerUPP handler;
        SInt32 refcon;
    } table[] = {{'echo', Echo, 0},  {'fail', Fail, 0},  {'errn', Fail, 1},
                 {'both', Fail, 2},  {'slow', Slow, 0},  {'attr', Attributes, 0},
                 {'hold', Hold, 0},  {'free', Free, 0},  {'rset', Reset, 0},
                 {'rely', Relay, 0}, {'bulk', Bulk, 0},  {'size', Measure, 0},
                 {'add1', Count, 1}, {'cnt?', Count, 0}, {'user', Interact, 0},
                 {'die ', Die, 0},   {'exit', Die, 1}};
    for (const auto& row : table)
        AEInstallEventHandler(kTestClass, row.id, row.handler, row.refcon, false);
}

}  // namespace

int main(int argc, char** argv) {
    bool isDeaf = false;
    UInt32 asked = 0;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--late") == 0 && i + 1 < argc)
            usleep(static_cast<useconds_t>(std::atoi(argv[++i])) * 1000);
        if (std::strcmp(argv[i], "--deaf") == 0) isDeaf = true;
        if (std::strcmp(argv[i], "--stays") == 0)
            AEInstallEventHandler(kCoreEventClass, kAEQuitApplication, Stay, 0, false);
        if (std::strcmp(argv[i], "--asks") == 0 && i + 1 < argc)
            asked = static_cast<UInt32>(std::atoi(argv[++i]));
    }
    InstallHandlers();
    ProcessSerialNumber self;
    if (GetCurrentProcess(&self) != noErr) return 1;
    std::printf("%u\n", self.lowLongOfPSN);
    std::fflush(stdout);
    while (isDeaf) pause();
    RunApplicationEventLoop();
    return asked == 0 ? 0 : AskBeforeGoing(asked);
}
