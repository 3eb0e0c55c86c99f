// The receiving side of the event benchmarks: answers a status query with a constant, and walks a
// list of files as the peers do. Packaged as a bundle of the recorder's signature, so that the
// library finds, checks and drives it like the real one.
#include <Carbon/Carbon.h>

#include "peers/record.h"

namespace {

OSErr AnswerNumber(AppleEvent* ioReply, UInt32 inValue) {
    const UInt32 value = EndianU32_NtoB(inValue);
    return AEPutParamPtr(ioReply, keyDirectObject, typeSInt32, &value, sizeof value);
}

OSErr GetData(const AppleEvent*, AppleEvent* ioReply, SInt32) {
    return AnswerNumber(ioReply, 42);
}

OSErr Accept(const AppleEvent*, AppleEvent*, SInt32) {
    return noErr;
}

OSErr Quit(const AppleEvent*, AppleEvent*, SInt32) {
    QuitApplicationEventLoop();
    return noErr;
}

OSErr AddFiles(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    AEDescList files;
    OSErr err = AEGetParamDesc(inEvent, 'kfil', typeAEList, &files);
    if (err != noErr) return err;
    SInt32 count = 0;
    AECountItems(&files, &count);
    uint32_t sum = 0;
    for (SInt32 i = 1; i <= count && err == noErr; ++i) {
        Record record;
        err = AEGetNthPtr(&files, i, typeFSS, nullptr, nullptr, record.bytes, sizeof record.bytes,
                          nullptr);
        sum = touch_record(record.bytes, sum);
    }
    AEDisposeDesc(&files);
    return err == noErr ? AnswerNumber(ioReply, sum) : err;
}

}  // namespace

int main() {
    AEInstallEventHandler(kAECoreSuite, kAEGetData, GetData, 0, false);
    AEInstallEventHandler(kAECoreSuite, kAESetData, Accept, 0, false);
    AEInstallEventHandler('Fv8k', 'addD', AddFiles, 0, false);
    AEInstallEventHandler('Fv8k', 'EndB', Accept, 0, false);
    AEInstallEventHandler(kCoreEventClass, kAEOpenApplication, Accept, 0, false);
    AEInstallEventHandler(kCoreEventClass, kAEQuitApplication, Quit, 0, false);
    RunApplicationEventLoop();
    return 0;
}
