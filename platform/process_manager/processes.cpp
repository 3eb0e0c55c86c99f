// Owns the calls that list processes and describe them.
#include <Carbon/Processes.h>

#include <cstring>

#include "core_foundation/internal.h"
#include "file_manager/catalog/catalog.h"
#include "process_manager/active_time.h"
#include "process_manager/own_process.h"
#include "process_manager/process_table.h"

namespace carbon {
namespace {

constexpr UInt32 kInformationLength = 60;

bool IsNoProcess(const ProcessSerialNumber& inPsn) {
    return inPsn.highLongOfPSN == 0 && inPsn.lowLongOfPSN == kNoProcess;
}

// One look at the table: hosts go through the list for every request.
OSErr Advance(ProcessSerialNumber* ioPsn) {
    const OSErr err = CheckIn();
    if (err != noErr) return err;
    const auto next = NextProcess(*ioPsn);
    if (!IsNoProcess(*ioPsn) && !WasGivenOut(NumberFromPsn(*ioPsn))) return paramErr;
    *ioPsn = next ? next->psn : ProcessSerialNumber{0, kNoProcess};
    return next ? OSErr(noErr) : OSErr(procNotFound);
}

void Describe(const ProcessEntry& inEntry, ProcessInfoRec* outInfo) {
    if (outInfo->processName != nullptr)
        std::memcpy(outInfo->processName, inEntry.name, inEntry.name[0] + 1u);
    outInfo->processNumber = inEntry.psn;
    outInfo->processType = inEntry.type;
    outInfo->processSignature = inEntry.signature;
    outInfo->processMode = inEntry.mode;
    outInfo->processLocation = nullptr;
    outInfo->processSize = 0;
    outInfo->processFreeMem = 0;
    outInfo->processLauncher = inEntry.launcher;
    outInfo->processLaunchDate = inEntry.launchTicks;
    outInfo->processActiveTime = TicksUsed(inEntry);
    if (outInfo->processAppSpec != nullptr) *outInfo->processAppSpec = inEntry.application;
}

// The entry of a number that a caller handed in, or the code that says why there is none.
OSErr Find(const ProcessSerialNumber* inPsn, std::optional<ProcessEntry>* outEntry) {
    if (inPsn == nullptr) return paramErr;
    const OSErr err = CheckIn();
    if (err != noErr) return err;
    *outEntry = FindProcess(*inPsn);
    return *outEntry ? OSErr(noErr) : OSErr(procNotFound);
}

ProcessSerialNumber RealNumber(const ProcessSerialNumber& inPsn) {
    const bool isMe = inPsn.highLongOfPSN == 0 && inPsn.lowLongOfPSN == kCurrentProcess;
    return isMe ? CurrentProcess().psn : inPsn;
}

bool AreEqual(const ProcessSerialNumber& inA, const ProcessSerialNumber& inB) {
    return inA.highLongOfPSN == inB.highLongOfPSN && inA.lowLongOfPSN == inB.lowLongOfPSN;
}

}  // namespace
}  // namespace carbon

OSErr GetCurrentProcess(ProcessSerialNumber* PSN) {
    if (PSN == nullptr) return paramErr;
    const OSErr err = carbon::CheckIn();
    if (err == noErr) *PSN = carbon::CurrentProcess().psn;
    return err;
}

OSErr GetNextProcess(ProcessSerialNumber* PSN) {
    return PSN == nullptr ? OSErr(paramErr) : carbon::Advance(PSN);
}

OSErr GetProcessInformation(const ProcessSerialNumber* PSN, ProcessInfoRec* info) {
    if (info == nullptr || info->processInfoLength < carbon::kInformationLength) return paramErr;
    std::optional<carbon::ProcessEntry> entry;
    const OSErr err = carbon::Find(PSN, &entry);
    if (err == noErr) carbon::Describe(*entry, info);
    return err;
}

OSErr SameProcess(const ProcessSerialNumber* PSN1, const ProcessSerialNumber* PSN2,
                  Boolean* result) {
    if (PSN1 == nullptr || PSN2 == nullptr || result == nullptr) return paramErr;
    // Kept: numbers are compared without being checked, so that {0, 0} equals {0, 0}.
    *result = carbon::AreEqual(carbon::RealNumber(*PSN1), carbon::RealNumber(*PSN2));
    return noErr;
}

OSStatus GetProcessBundleLocation(const ProcessSerialNumber* psn, FSRef* location) {
    if (location == nullptr) return paramErr;
    std::optional<carbon::ProcessEntry> entry;
    const OSErr err = carbon::Find(psn, &entry);
    if (err != noErr) return err;
    const std::string bundle = carbon::BundlePath(entry->psn);
    return carbon::RefFromPath(bundle.empty() ? carbon::ExecutablePath(entry->psn) : bundle,
                               location);
}

OSStatus CopyProcessName(const ProcessSerialNumber* psn, CFStringRef* name) {
    if (name == nullptr) return paramErr;
    std::optional<carbon::ProcessEntry> entry;
    const OSErr err = carbon::Find(psn, &entry);
    if (err != noErr) return err;
    *name = carbon::StringFromUtf8(carbon::FullName(entry->psn));
    return *name == nullptr ? OSStatus(memFullErr) : OSStatus(noErr);
}

OSStatus GetProcessPID(const ProcessSerialNumber* psn, pid_t* pid) {
    if (pid == nullptr) return paramErr;
    std::optional<carbon::ProcessEntry> entry;
    const OSErr err = carbon::Find(psn, &entry);
    if (err == noErr) *pid = entry->pid;
    return err;
}

OSStatus GetProcessForPID(pid_t pid, ProcessSerialNumber* psn) {
    if (psn == nullptr) return paramErr;
    const OSErr err = carbon::CheckIn();
    if (err != noErr) return err;
    const auto entry = carbon::FindProcessByPid(pid);
    if (entry) *psn = entry->psn;
    return entry ? OSStatus(noErr) : OSStatus(procNotFound);
}
