// The MoreProc functions: the process list and process information as result codes.
#include "vantor/process/MoreProc.h"

#include "vantor/foundation/MoreAssert.h"

namespace {

const ProcessSerialNumber kThisProcess = {0, kCurrentProcess};

const ProcessSerialNumber* OrThisProcess(const ProcessSerialNumber* inPSN) {
    return inPSN != nullptr ? inPSN : &kThisProcess;
}

OSErr GetInformation(const ProcessSerialNumber* inPSN, StringPtr inName, FSSpec* inAppFile,
                     ProcessInfoRec* outInfo) {
    outInfo->processInfoLength = 60;
    outInfo->processName = inName;
    outInfo->processAppSpec = inAppFile;
    return GetProcessInformation(OrThisProcess(inPSN), outInfo);
}

// The first process that `inMatches`; one whose information cannot be read is passed over.
template <typename Matches>
OSErr FindProcess(ProcessSerialNumber* outPSN, Matches inMatches) {
    *outPSN = {0, kNoProcess};
    ProcessInfoRec info;
    OSErr err;
    while ((err = GetNextProcess(outPSN)) == noErr) {
        if (MoreProcGetProcessInformation(outPSN, &info) == noErr && inMatches(info)) break;
    }
    return err;
}

}  // namespace

OSErr MoreProcFindProcessByCreator(OSType pCreator, ProcessSerialNumber* pPSN) {
    MoreAssertQ(pPSN != nil);
    if (pPSN == nullptr) return paramErr;
    return FindProcess(
        pPSN, [=](const ProcessInfoRec& inInfo) { return inInfo.processSignature == pCreator; });
}

OSErr MoreProcFindProcessBySignature(OSType pCreator, OSType pType, ProcessSerialNumber* pPSN) {
    MoreAssertQ(pPSN != nil);
    if (pPSN == nullptr) return paramErr;
    return FindProcess(pPSN, [=](const ProcessInfoRec& inInfo) {
        return inInfo.processSignature == pCreator && inInfo.processType == pType;
    });
}

OSErr MoreProcGetProcessInformation(const ProcessSerialNumber* pPSN, ProcessInfoRec* pInfo) {
    MoreAssertQ(pInfo != nil);
    if (pInfo == nullptr) return paramErr;
    return GetInformation(pPSN, nullptr, nullptr, pInfo);
}

OSErr MoreProcGetProcessName(const ProcessSerialNumber* pPSN, StringPtr pProcessName) {
    MoreAssertQ(pProcessName != nil);
    ProcessInfoRec info;
    return GetInformation(pPSN, pProcessName, nullptr, &info);
}

OSErr MoreProcGetProcessTypeSignature(const ProcessSerialNumber* pPSN, OSType* pType,
                                      OSType* pCreator) {
    ProcessInfoRec info;
    const OSErr err = MoreProcGetProcessInformation(pPSN, &info);
    if (err != noErr) return err;
    *pType = info.processType;
    *pCreator = info.processSignature;
    return noErr;
}

OSErr MoreProcGetProcessAppFile(const ProcessSerialNumber* pPSN, FSSpec* pAppFile) {
    if (pAppFile == nullptr) return paramErr;
    ProcessInfoRec info;
    return GetInformation(pPSN, nullptr, pAppFile, &info);
}

OSErr MoreProcGetCurrentProcessFSSpec(FSSpec* pAppFile) {
    return MoreProcGetProcessAppFile(nullptr, pAppFile);
}

OSErr MoreProcIsProcessBackgroundOnly(const ProcessSerialNumber* pPSN, Boolean* pBackgroundOnly) {
    ProcessInfoRec info;
    const OSErr err = MoreProcGetProcessInformation(pPSN, &info);
    if (err == noErr) *pBackgroundOnly = (info.processMode & modeOnlyBackground) != 0;
    return err;
}

Boolean MoreProcIsProcessAtFront(const ProcessSerialNumber* pPSN) {
    ProcessSerialNumber front;
    Boolean same = false;
    OSErr err = GetFrontProcess(&front);
    if (err == noErr) err = SameProcess(OrThisProcess(pPSN), &front, &same);
    MoreAssertQ(err == noErr);
    return err == noErr && same;
}
