// Owns the table of events and their installation.
#include "handlers/handlers.h"

#include <array>

#include "handlers/commands.h"
#include "handlers/objects.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

Recorder* sRecorder = nullptr;

struct Entry {
    AEEventClass eventClass;
    AEEventID eventID;
    void (*handle)(Recorder&, const AppleEvent&, AppleEvent&);
};

constexpr auto kEvents =
    std::to_array<Entry>({{kAECoreSuite, kAEGetData, HandleGetData},
                          {kAECoreSuite, kAESetData, HandleSetData},
                          {kAECoreSuite, kAECountElements, HandleCountElements},
                          {kAECoreSuite, kAECreateElement, HandleMakeDisc},
                          {'Fv8k', 'addD', HandleAddItems},
                          {'Fv8k', 'wrIt', HandleWrite},
                          {'Fv8k', 'RDsc', HandleRequestBlankDisc},
                          {'Fv8k', 'Ejct', HandleEject},
                          {'Fv8k', 'EndB', HandleEndSession},
                          {'Fv8k', 'Cncl', HandleCancel},
                          {kCoreEventClass, kAEOpenApplication, HandleOpen},
                          {kCoreEventClass, kAEReopenApplication, HandleOpen},
                          {kCoreEventClass, kAEQuitApplication, HandleQuit}});

HostId SenderOf(const AppleEvent& inEvent) {
    ProcessSerialNumber sender = {};
    Size size = 0;
    DescType type = 0;
    if (AEGetAttributePtr(&inEvent, keyAddressAttr, typeProcessSerialNumber, &type, &sender,
                          sizeof sender, &size) != noErr)
        return 0;
    return HostId(EndianU32_BtoN(sender.highLongOfPSN)) << 32 | EndianU32_BtoN(sender.lowLongOfPSN);
}

OSErr Handle(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32 inIndex) {
    return CodeOf(
        [&] {
            sRecorder->state.ServeHost(SenderOf(*inEvent));
            kEvents[size_t(inIndex)].handle(*sRecorder, *inEvent, *ioReply);
        },
        ioReply);
}

}  // namespace

bool HostIsAlive(HostId inHost) {
    const ProcessSerialNumber psn = {UInt32(inHost >> 32), UInt32(inHost)};
    pid_t pid = 0;
    return GetProcessPID(&psn, &pid) == noErr;
}

void InstallHandlers(Recorder& inRecorder) {
    sRecorder = &inRecorder;
    InstallObjectAccessors(inRecorder.state);
    for (size_t i = 0; i < kEvents.size(); ++i)
        ThrowIfError(AEInstallEventHandler(kEvents[i].eventClass, kEvents[i].eventID,
                                           NewAEEventHandlerUPP(Handle), SInt32(i), false));
}

}  // namespace recorder
