// Owns the installation of handlers, and which function is whose.
#include "handlers/handlers.h"

#include <algorithm>
#include <array>

#include "handlers/commands.h"
#include "handlers/objects.h"
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

Recorder* sRecorder = nullptr;

using Function = void (*)(Recorder&, const AppleEvent&, AppleEvent&);

struct Entry {
    OSType name;  // the last word of a line in the resources' table of events
    Function handle;
};

constexpr auto kHandlers = std::to_array<Entry>({{'getd', HandleGetData},
                                                 {'setd', HandleSetData},
                                                 {'cnte', HandleCountElements},
                                                 {'crel', HandleMakeDisc},
                                                 {'addD', HandleAddItems},
                                                 {'wrIt', HandleWrite},
                                                 {'RDsc', HandleRequestBlankDisc},
                                                 {'Ejct', HandleEject},
                                                 {'EndB', HandleEndSession},
                                                 {'Cncl', HandleCancel},
                                                 {'oapp', HandleOpen},
                                                 {'quit', HandleQuit}});

Function FunctionFor(OSType inName) {
    const auto* found = std::find_if(kHandlers.begin(), kHandlers.end(),
                                     [&](const Entry& entry) { return entry.name == inName; });
    if (found == kHandlers.end()) LException::Throw(errAEHandlerNotFound);
    return found->handle;
}

HostId SenderOf(const AppleEvent& inEvent) {
    ProcessSerialNumber sender = {};
    Size size = 0;
    DescType type = 0;
    if (AEGetAttributePtr(&inEvent, keyAddressAttr, typeProcessSerialNumber, &type, &sender,
                          sizeof sender, &size) != noErr)
        return 0;
    return HostId(EndianU32_BtoN(sender.highLongOfPSN)) << 32 | EndianU32_BtoN(sender.lowLongOfPSN);
}

OSErr Handle(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32 inName) {
    return CodeOf(
        [&] {
            sRecorder->state.ServeHost(SenderOf(*inEvent));
            FunctionFor(OSType(inName))(*sRecorder, *inEvent, *ioReply);
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
    // Without its table the recorder would run and be deaf.
    if (CountResources('aedt') == 0) LException::Throw(resNotFound);
    UAppleEventsMgr::InstallAEHandlers(Handle);
}

}  // namespace recorder
