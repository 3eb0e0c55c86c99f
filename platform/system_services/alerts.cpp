// Owns ParamText and the way an alert finds its answer.
#include <Carbon/Dialogs.h>
#include <Platform/Platform.h>
#include <unistd.h>

#include <cstring>

#include "posix/across_forks.h"
#include "system_services/alert_terminal.h"
#include "system_services/alert_text.h"
#include "system_services/hooks.h"

namespace carbon {
namespace {

constexpr SInt16 kNotShown = -1;

constinit Hook<PlatformAlertHook> gAlertHook;
constinit std::mutex gParamsMutex;
const HeldAcrossForks sHeldHook(gAlertHook.Guard()), sHeldParams(gParamsMutex);
constinit ParamTexts gParams;

ParamTexts CurrentParams() {
    const std::lock_guard lock(gParamsMutex);
    return gParams;
}

void SetParam(size_t inIndex, ConstStr255Param inText) {
    if (inText) std::memcpy(gParams.strings[inIndex].data(), inText, inText[0] + 1U);
}

SInt16 AskHook(PlatformAlertHook inHook, void* inContext, PlatformAlert inAlert,
               const ParamTexts& inParams) {
    for (size_t i = 0; i < 4; ++i) inAlert.params[i] = inParams.strings[i].data();
    return inHook(&inAlert, inContext);
}

SInt16 AskUser(const std::string& inText) {
    if (isatty(STDIN_FILENO) && isatty(STDERR_FILENO))
        return AskOnTerminal(STDIN_FILENO, STDERR_FILENO, inText);
    WriteText(inText + '\n');
    return kContinueItem;
}

// Linux: no screen. The hook, the terminal or nobody answers.
SInt16 ShowAlert(SInt16 inAlertID, SInt16 inKind) {
    const char* const pattern = AlertTemplate(inAlertID);
    if (!pattern) return kNotShown;
    const ParamTexts params = CurrentParams();
    const std::string text = AlertText(pattern, params);
    const auto [hook, context] = gAlertHook.Get();
    if (!hook) return AskUser(text);
    return AskHook(hook, context, {inAlertID, inKind, {}, text.c_str()}, params);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

ModalFilterUPP NewModalFilterUPP(ModalFilterProcPtr userRoutine) {
    return userRoutine;
}

void DisposeModalFilterUPP(ModalFilterUPP) {}

Boolean InvokeModalFilterUPP(DialogRef theDialog, struct EventRecord* theEvent,
                             DialogItemIndex* itemHit, ModalFilterUPP userUPP) {
    return userUPP(theDialog, theEvent, itemHit);
}

void ParamText(ConstStr255Param param0, ConstStr255Param param1, ConstStr255Param param2,
               ConstStr255Param param3) {
    const std::lock_guard lock(gParamsMutex);
    SetParam(0, param0);
    SetParam(1, param1);
    SetParam(2, param2);
    SetParam(3, param3);
}

DialogItemIndex Alert(SInt16 alertID, ModalFilterUPP) {
    return ShowAlert(alertID, kPlatformPlainAlert);
}

DialogItemIndex StopAlert(SInt16 alertID, ModalFilterUPP) {
    return ShowAlert(alertID, kPlatformStopAlert);
}

DialogItemIndex NoteAlert(SInt16 alertID, ModalFilterUPP) {
    return ShowAlert(alertID, kPlatformNoteAlert);
}

DialogItemIndex CautionAlert(SInt16 alertID, ModalFilterUPP) {
    return ShowAlert(alertID, kPlatformCautionAlert);
}

void PlatformSetAlertHook(PlatformAlertHook hook, void* context) {
    gAlertHook.Set(hook, context);
}
