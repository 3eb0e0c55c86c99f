// Owns the question whether a handler may turn to the user.
#include <Carbon/AEInteraction.h>
#include <Carbon/AppleEvents.h>
#include <Carbon/MacErrors.h>
#include <Carbon/Processes.h>

#include "apple_event_manager/handling/dispatch.h"
#include "apple_event_manager/internal.h"

namespace carbon {

namespace {

AEInteractAllowed gAllowed = kAEInteractWithLocal;

AEInteractAllowed LevelNeededBy(SInt16 inSource) {
    if (inSource == kAEDirectCall || inSource == kAESameProcess) return kAEInteractWithSelf;
    return inSource == kAELocalProcess ? kAEInteractWithLocal : kAEInteractWithAll;
}

bool IsAllowedFor(const AppleEvent& inEvent) {
    const UInt32 wish = EventAttribute32(inEvent, keyInteractLevelAttr).value_or(kAECanInteract);
    const SInt16 source = EventAttribute16(inEvent, keyEventSourceAttr).value_or(kAEUnknownSource);
    return (wish & kAEAlwaysInteract) != kAENeverInteract && gAllowed >= LevelNeededBy(source);
}

}  // namespace

}  // namespace carbon

using namespace carbon;

OSErr AEGetInteractionAllowed(AEInteractAllowed* level) {
    if (!level) return paramErr;
    *level = gAllowed;
    return noErr;
}

OSErr AESetInteractionAllowed(AEInteractAllowed level) {
    if (level < kAEInteractWithSelf || level > kAEInteractWithAll) return paramErr;
    gAllowed = level;
    return noErr;
}

OSErr AEInteractWithUser(SInt32, NMRecPtr, AEIdleUPP) {
    const AppleEvent& event = TheCurrentEvent();
    if (!IsNullDesc(event) && !IsAllowedFor(event)) return errAENoUserInteraction;
    // Linux: whoever asks comes to the front at once; there is no user to be waited for.
    const ProcessSerialNumber self = {0, kCurrentProcess};
    const OSErr err = SetFrontProcess(&self);
    return err == appIsDaemon ? OSErr{errAENoUserInteraction} : err;
}
