// The controller object: what a session changes in the recording application, and undoing it.
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/controller/CVantor.h"
#include "vantor/controller/Protocol.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/process/UProcess.h"

CVantor* CVantor::sCurrentVantor = nullptr;
SInt32 CVantor::sUAppleEventsMgrInitialized = 0;
AEIdleUPP CVantor::sAEIdleProc = nullptr;
SInt32 CVantor::sRunningOnX = -1;

namespace {

void EndSessionThere() {
    try {
        CVantor::SendSimpleMirelEvent(kMirelEventClass, kMirelEndSession);
    } catch (...) {
        // Kept: one that does not understand the end of a session is asked to quit all the same.
    }
}

void QuitWithoutSaving() {
    const DescType no = BigEndianFromNative(DescType{kAENo});
    StAEDescriptor quit;
    CVantor::MakeMirelAppleEvent(kCoreEventClass, kAEQuitApplication, quit);
    AEPutParamPtr(quit, keyAESaveOptions, typeEnumerated, &no, sizeof no);
    MoreAESendEventNoReturnValue(CVantor::GetAEIdleProc(), quit);  // Kept: nobody is told.
}

}  // namespace

CVantor::CVantor() : mLaunchedMirel(0), mServerModeWasOn(0), mHaveBlankDisc(0) {}

CVantor::~CVantor() {
    try {
        CVantor::TerminateSelf();
    } catch (...) {
        // Kept: a session that cannot be undone goes away all the same.
    }
}

void CVantor::InitiateSelf() {
    if (IsMirelRunning(nullptr)) {
        mServerModeWasOn = GetMirelServerMode() ? 1 : 0;
        if (mServerModeWasOn == 0) SetMirelServerMode(true);
    } else {
        LaunchMirel(true);
        mLaunchedMirel = 1;  // Kept: server mode stays as it is in one that we launched.
    }
}

void CVantor::TerminateSelf() {
    if (mLaunchedMirel != 0) {
        if (IsMirelRunning(nullptr)) {
            EndSessionThere();
            QuitWithoutSaving();
        }
        mLaunchedMirel = 0;
    } else if (mServerModeWasOn == 0 && IsMirelRunning(nullptr)) {
        SetMirelServerMode(false);
        mServerModeWasOn = 1;
    }
}

void CVantor::InitiateSession() {
    if (sUAppleEventsMgrInitialized == 0) {
        UAppleEventsMgr::Initialize();
        sUAppleEventsMgrInitialized = 1;
    }
    if (sCurrentVantor != nullptr) {
        sCurrentVantor->mLaunchedMirel = 0;  // so that nothing is quit: the new session takes over
        delete sCurrentVantor;
        sCurrentVantor = nullptr;
    }
    sCurrentVantor = new CVantor;
    sCurrentVantor->InitiateSelf();  // Kept: the session is open also when this throws.
}

void CVantor::TerminateSession() {
    if (sCurrentVantor == nullptr) return;
    sCurrentVantor->TerminateSelf();
    delete sCurrentVantor;  // Kept: undoes once more; one still quitting has server mode put off.
    sCurrentVantor = nullptr;
}

Boolean CVantor::IsSessionInitiated() {
    return sCurrentVantor != nullptr;
}

void CVantor::SetAEIdleProc(AEIdleUPP inIdleProc) {
    if (sAEIdleProc != nullptr) {
        DisposeAEIdleUPP(sAEIdleProc);
        sAEIdleProc = nullptr;
    }
    sAEIdleProc = inIdleProc != nullptr ? inIdleProc : NewAEIdleUPP(MoreAESimpleIdleFunction);
}

AEIdleUPP CVantor::GetAEIdleProc() {
    if (sAEIdleProc == nullptr) SetAEIdleProc(nullptr);
    return sAEIdleProc;
}

Boolean CVantor::RunningOnX() {
    if (sRunningOnX == -1) {
        SInt32 version = 0;
        const OSErr error = Gestalt(gestaltSystemVersion, &version);
        sRunningOnX = error == noErr && version > 0x0FFF ? 1 : 0;
    }
    return sRunningOnX == 1;
}

void CVantor::BringMeToFront() {
    UProcess::MakeMeFront();
}
