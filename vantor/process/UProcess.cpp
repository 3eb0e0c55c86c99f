// Processes with exceptions: lookup, fronting, launching, quitting.
#include "vantor/process/UProcess.h"

#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/containers/TArray.h"
#include "vantor/files/UVolume.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"

SProcessInfo::SProcessInfo() : ProcessInfoRec{} {
    processInfoLength = 60;
    processName = mName;
    processAppSpec = &mAppSpec;
}

namespace {

const ProcessSerialNumber kBeforeTheFirst = {0, kNoProcess};

// One whose information cannot be read is passed over.
template <typename Matches>
ProcessSerialNumber FindProcess(Matches inMatches) {
    ProcessSerialNumber psn = kBeforeTheFirst;
    SProcessInfo info;
    while (!UProcess::GetNextPSN(psn)) {
        if (GetProcessInformation(&psn, info) == noErr && inMatches(info)) return psn;
    }
    LException::Throw(procNotFound);
}

template <typename Find>
bool WasFound(Find inFind) {
    try {
        inFind();
        return true;
    } catch (const LException& exception) {
        if (exception.GetErrorCode() != procNotFound) throw;
        return false;
    }
}

ProcessSerialNumber FinderIfRunning() {
    try {
        return UProcess::GetPSN('MACS', 'FNDR');
    } catch (...) {
        return kBeforeTheFirst;  // Kept: whatever went wrong, there is no Finder to spare.
    }
}

}  // namespace

ProcessSerialNumber UProcess::GetPSN(OSType inCreator, OSType inType) {
    return FindProcess([=](const SProcessInfo& inInfo) {
        return inInfo.processSignature == inCreator && inInfo.processType == inType;
    });
}

ProcessSerialNumber UProcess::GetPSN(ConstStringPtr inName, OSType inType, bool inCaseSensitive,
                                     bool inDiacSensitive) {
    return FindProcess([=](const SProcessInfo& inInfo) {
        return inInfo.processType == inType &&
               EqualString(inInfo.mName, inName, inCaseSensitive, inDiacSensitive);
    });
}

bool UProcess::IsRunning(OSType inCreator, OSType inType) {
    return WasFound([=] { GetPSN(inCreator, inType); });
}

bool UProcess::IsRunning(ConstStringPtr inName, OSType inType, bool inCaseSensitive,
                         bool inDiacSensitive) {
    return WasFound([=] { GetPSN(inName, inType, inCaseSensitive, inDiacSensitive); });
}

void UProcess::GetInfo(const ProcessSerialNumber& inPSN, SProcessInfo& outInfo) {
    ThrowIfError(GetProcessInformation(&inPSN, outInfo));
}

ProcessSerialNumber UProcess::GetFront() {
    ProcessSerialNumber front;
    ThrowIfError(GetFrontProcess(&front));
    return front;
}

void UProcess::SetFront(const ProcessSerialNumber& inPSN) {
    ThrowIfError(SetFrontProcess(&inPSN));
}

void UProcess::MakeMeFront() {
    SetFront(GetMyPSN());
}

ProcessSerialNumber UProcess::GetMyPSN() {
    ProcessSerialNumber psn;
    ThrowIfError(GetCurrentProcess(&psn));
    return psn;
}

ProcessSerialNumber UProcess::GetCurrentPSN() {
    return {0, kCurrentProcess};
}

bool UProcess::GetNextPSN(ProcessSerialNumber& ioPSN) {
    const OSErr error = GetNextProcess(&ioPSN);
    if (error == procNotFound && ioPSN == kBeforeTheFirst) return true;
    ThrowIfError(error);
    return false;
}

bool UProcess::GetPreviousPSN(ProcessSerialNumber& ioPSN) {
    TArray<ProcessSerialNumber> processes;
    ProcessSerialNumber psn = kBeforeTheFirst;
    while (!GetNextPSN(psn)) processes.AddItem(psn);
    const SInt32 index = processes.FetchIndexOf(ioPSN);
    if (index == 0) LException::Throw(procNotFound);
    if (index > 1) processes.FetchItemAt(index - 1, ioPSN);
    return index == 1;
}

bool UProcess::IsSame(const ProcessSerialNumber& inFirst, const ProcessSerialNumber& inSecond) {
    Boolean same = false;
    return SameProcess(&inFirst, &inSecond, &same) == noErr && same;
}

void UProcess::Wake(const ProcessSerialNumber& inPSN) {
    ThrowIfError(WakeUpProcess(&inPSN));
}

void UProcess::Kill(const ProcessSerialNumber& inPSN) {
    const auto psn = BigEndianFromNative(inPSN);
    StAEDescriptor address(typeProcessSerialNumber, &psn, sizeof psn);
    AppleEvent quit;
    ThrowIfError(AECreateAppleEvent(kCoreEventClass, kAEQuitApplication, address,
                                    kAutoGenerateReturnID, kAnyTransactionID, &quit));
    UAppleEventsMgr::SendAppleEvent(quit, true);
}

void UProcess::KillMe() {
    Kill(GetMyPSN());
}

void UProcess::KillAllButMe(bool inKillFinder) {
    const ProcessSerialNumber finder = FinderIfRunning();
    const ProcessSerialNumber me = GetMyPSN();
    ProcessSerialNumber psn = kBeforeTheFirst;
    while (!GetNextPSN(psn)) {
        if (!IsSame(psn, me) && !IsSame(psn, finder)) Kill(psn);
    }
    if (inKillFinder && finder != kBeforeTheFirst) Kill(finder);
}

ProcessSerialNumber UProcess::LaunchApp(const FSSpec& inSpec, UInt16 inLaunchFlags) {
    FSSpec spec = inSpec;
    LaunchParamBlockRec block = {};
    block.launchBlockID = extendedBlock;
    block.launchEPBLength =
        32;  // what the record has beyond its first 12 bytes with 32-bit pointers
    block.launchFileFlags = 0x0800;
    block.launchControlFlags = static_cast<UInt16>(inLaunchFlags | launchNoFileFlags);
    block.launchAppSpec = &spec;
    ThrowIfError(LaunchApplication(&block));
    return block.launchProcessSN;
}

ProcessSerialNumber UProcess::LaunchApp(AliasHandle inAlias, UInt16 inLaunchFlags) {
    FSSpec spec;
    Boolean wasChanged;
    ThrowIfError(ResolveAlias(nullptr, inAlias, &spec, &wasChanged));
    return LaunchApp(spec, inLaunchFlags);
}

Boolean UProcess::Launch(OSType inCreator, OSType inType, UInt16 inLaunchFlags, FSSpec* outAppSpec,
                         ProcessSerialNumber* outPSN) {
    if (IsRunning(inCreator, inType)) {
        const ProcessSerialNumber psn = GetPSN(inCreator, inType);
        if (outPSN != nullptr) *outPSN = psn;
        if (outAppSpec != nullptr) UVolume::FindApp(inCreator, *outAppSpec);
        if (!(inLaunchFlags & launchDontSwitch)) SetFront(psn);
        if (!(inLaunchFlags & launchContinue)) KillMe();
        return true;
    }
    FSSpec found;
    if (!UVolume::FindApp(inCreator, found)) return false;
    LaunchApp(found, inLaunchFlags);
    if (outAppSpec != nullptr) *outAppSpec = found;
    // Kept: of type 'APPL', whichever type was asked for.
    if (outPSN != nullptr) *outPSN = GetPSN(inCreator, 'APPL');
    return true;
}

bool operator==(const ProcessSerialNumber& inFirst, const ProcessSerialNumber& inSecond) {
    return UProcess::IsSame(inFirst, inSecond);
}

bool operator!=(const ProcessSerialNumber& inFirst, const ProcessSerialNumber& inSecond) {
    return !UProcess::IsSame(inFirst, inSecond);
}
