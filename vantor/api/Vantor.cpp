// The exported calls, each one statement around one operation of the controller.
#include "vantor/api/Vantor.h"

#include "vantor/api/Status.h"
#include "vantor/controller/CVantor.h"

void VantorBundleInit() {}

SInt32 VantorInitiateSession() {
    return Status(CVantor::InitiateSession);
}

SInt32 VantorTerminateSession() {
    return Status(CVantor::TerminateSession);
}

Boolean VantorIsSessionInitiated() {
    return Answer(CVantor::IsSessionInitiated);
}

Boolean VantorGetMirelProcessSerialNumber(ProcessSerialNumber* outPSN) {
    return Answer([=] { return CVantor::IsMirelRunning(outPSN); });
}

CFStringRef VantorGetMirelPath() {
    return Answer(CVantor::GetMirelPath);
}

Boolean VantorIsMirelRunning() {
    return Answer([] { return CVantor::IsMirelRunning(nullptr); });
}

Boolean VantorIsMirelFound() {
    return Answer([] {
        FSSpec found;
        CVantor::FindMirel(found);
        return Boolean{true};
    });
}

SInt32 VantorGetServerMode(Boolean* outOn) {
    return StatusWithResult(outOn, CVantor::GetMirelServerMode);
}

SInt32 VantorSetServerMode(Boolean inOn) {
    return Status([=] { CVantor::SetMirelServerMode(inOn); });
}

SInt32 VantorGetSimulationMode(Boolean* outOn) {
    return StatusWithResult(outOn, CVantor::GetMirelSimulationMode);
}

SInt32 VantorSetSimulationMode(Boolean inOn) {
    return Status([=] { CVantor::SetMirelSimulationMode(inOn); });
}

SInt32 VantorGetStatusCode(SInt32* outCode) {
    return StatusWithResult(outCode, CVantor::GetMirelStatusCode);
}

SInt32 VantorGetStatusText(Str255 outText) {
    return Status([=] { CVantor::GetMirelStatusText(outText ? outText : ScratchText().mBytes); });
}

void VantorSetAEIdleProc(AEIdleUPP inIdleProc) {
    CVantor::SetAEIdleProc(inIdleProc);
}

SInt32 VantorMakeNewDisc(OSType inDiscType) {
    return Status([=] { CVantor::MakeNewDisc(inDiscType); });
}

SInt32 VantorAddFiles(FSSpec* inFiles, SInt32 inCount) {
    return Status([=] { CVantor::AddFiles(inFiles, inCount); });
}

Boolean VantorIsMirelBusy() {
    return Answer(CVantor::IsMirelBusy);
}

SInt32 VantorWriteDisc() {
    return Status([] { CVantor::WriteDisc(1, 1, 1, false, true); });
}

SInt32 VantorWriteDiscWithOptions(SInt16 inWriteMode, SInt16 inEject, SInt16 inVerify,
                                  Boolean inQuit, Boolean inBringToFront) {
    return Status([=] {
        CVantor::WriteDisc(inWriteMode, inEject, inVerify, inQuit != 0, inBringToFront != 0);
    });
}

SInt32 VantorBringMirelToFront() {
    return Status(CVantor::BringMirelToFront);
}

SInt32 VantorGetDiscSize(SInt32* outSize) {
    return StatusWithResult(outSize, CVantor::GetMirelDiscSize);
}

SInt32 VantorGetMediaInfo(SInt32* outInfo) {
    return StatusWithResult(outInfo, CVantor::GetMirelMediaInfo);
}

SInt32 VantorMediaSettingInfo(SInt32* outType) {
    // Kept: the type of the reference is all the host gets, and the reference stays allocated.
    return StatusWithResult(outType,
                            [] { return SInt32(CVantor::GetDiscOneDesc().descriptorType); });
}

SInt32 VantorRequestBlankDisc(SInt32* outInfo) {
    return BlankDiscStatus(outInfo, CVantor::RequestBlankDisc);
}

SInt32 VantorEjectDisc() {
    return Status(CVantor::EjectDisc);
}
