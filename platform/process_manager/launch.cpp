// Owns LaunchApplication: one running copy of each application, known before it has begun.
#include <Carbon/AppleEvents.h>
#include <Carbon/LSInfo.h>
#include <Carbon/OSUtils.h>
#include <Carbon/Processes.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "apple_event_manager/internal.h"
#include "apple_event_manager/transport/received.h"
#include "apple_event_manager/transport/transport.h"
#include "apple_event_manager/watching/watched_send.h"
#include "file_manager/catalog/catalog.h"
#include "posix/file_lock.h"
#include "posix/proc_stat.h"
#include "posix/runtime_folder.h"
#include "process_manager/front.h"
#include "process_manager/launchable.h"
#include "process_manager/opening_event.h"
#include "process_manager/own_process.h"
#include "process_manager/process_table.h"
#include "process_manager/slots.h"
#include "process_manager/spawn.h"

namespace carbon {
namespace {

// Hosts that start the same application at the same time take turns: the second finds the first's.
constexpr std::chrono::seconds kTurnPatience(10);

bool IsFrom(const LongFacts& inFacts, const Program& inProgram) {
    if (!inProgram.bundle.empty()) return inFacts.bundle == inProgram.bundle;
    return inFacts.executable == inProgram.executable;
}

std::optional<UInt32> FindRunning(TableFile& ioTable, const Program& inProgram) {
    const UInt32 used = std::min(kSlotCount, ioTable->header.slotsUsed.load());
    for (Slot* slot = ioTable->slots; slot != ioTable->slots + used; ++slot) {
        const UInt32 number = slot->number;
        const bool fits = number != 0 && IsFrom(LongFactsOf(ioTable, *slot), inProgram);
        if (fits && IsSlotAlive(*slot, number)) return number;
    }
    return std::nullopt;
}

void Describe(const Program& inProgram, LongFacts* outFacts) {
    std::snprintf(outFacts->executable, sizeof outFacts->executable, "%s",
                  inProgram.executable.c_str());
    std::snprintf(outFacts->bundle, sizeof outFacts->bundle, "%s", inProgram.bundle.c_str());
    std::snprintf(outFacts->fullName, sizeof outFacts->fullName, "%s", inProgram.fullName.c_str());
}

ProcessEntry EntryFor(const Program& inProgram, UInt32 inNumber) {
    ProcessEntry entry = {};
    entry.psn = {0, inNumber};
    entry.pid = getpid();  // until there is a process: tells a child that its number is on the way
    entry.type = inProgram.type;
    entry.signature = inProgram.signature;
    entry.mode = inProgram.mode;
    entry.launcher = CurrentProcess().psn;
    entry.launchTicks = TickCount();
    ShortName(inProgram.fullName, entry.name);
    if (SpecFromPath(inProgram.executable, &entry.application) != noErr) entry.application = {};
    return entry;
}

// The child looks for its process number in a slot that says "starting": that is written last.
void HandOver(Slot& ioSlot, pid_t inPid) {
    ioSlot.startTime = ProcessStartTime(inPid);
    ioSlot.pid = inPid;
    ioSlot.state = SlotState::kStarting;
    LetGo(ioSlot);
}

// Looking an ended process up clears its entry away.
void Bury(const ProcessSerialNumber& inPsn, SInt32 inStatus) {
    static_cast<void>(FindProcess(inPsn));
    DropOpeningEvent(inPsn.lowLongOfPSN);
    // The launcher may not listen for events; then it does not miss this one.
    static_cast<void>(
        SendControl({0, kCurrentProcess}, ControlKind::kApplicationDied, inPsn, inStatus));
}

// Spawns the program for a slot that this thread holds, its first event laid ready before.
OSErr SpawnFor(Slot& ioSlot, const Program& inProgram, const AppleEvent* inEvent) {
    const UInt32 number = ioSlot.number;
    OSErr err = inEvent == nullptr ? OSErr(noErr) : KeepOpeningEvent(number, *inEvent);
    pid_t pid = 0;
    if (err == noErr) err = Spawn(inProgram.executable, &pid);
    if (err != noErr) {
        DropOpeningEvent(number);
        Withdraw(ioSlot);
        LetGo(ioSlot);
        return err;
    }
    HandOver(ioSlot, pid);
    WhenEnded(pid, [number](SInt32 status) { Bury({0, number}, status); });
    return noErr;
}

// The program finds its first event ready: no send, but one to those who watch.
OSErr SpawnWatched(Slot& ioSlot, const Program& inProgram, const AppleEvent* inEvent) {
    AppleEvent opening = {};
    // Without memory for a copy the program is launched unseen.
    if (MakeOpeningEvent(inEvent, &opening) != noErr) return SpawnFor(ioSlot, inProgram, inEvent);
    WatchedSend watched(opening, {0, ioSlot.number}, kAENoReply);
    const OSErr err = watched.Ended(SpawnFor(ioSlot, inProgram, inEvent), nullptr);
    AEDisposeDesc(&opening);
    return err;
}

OSErr Start(TableFile& ioTable, const Program& inProgram, const AppleEvent* inEvent,
            UInt32* outNumber) {
    Slot* const slot = ClaimSlot(ioTable);
    if (slot == nullptr) return memFullErr;
    const ProcessEntry entry = EntryFor(inProgram, NewNumber(ioTable));
    Describe(inProgram, &LongFactsOf(ioTable, *slot));
    Publish(ioTable, *slot, entry);
    *outNumber = entry.psn.lowLongOfPSN;
    return IsSomebodyWatching() ? SpawnWatched(*slot, inProgram, inEvent)
                                : SpawnFor(*slot, inProgram, inEvent);
}

// A program that runs already gets the event the usual way.
OSErr SendTo(UInt32 inNumber, AppleEvent* ioEvent) {
    const ProcessSerialNumber psn = BigEndian({0, inNumber});
    const OSErr err =
        SetEventAttribute(ioEvent, keyAddressAttr, typeProcessSerialNumber, &psn, sizeof psn);
    AppleEvent none = {};
    return err != noErr ? err
                        : AESend(ioEvent, &none, kAENoReply | kAENeverInteract, kAENormalPriority,
                                 kAEDefaultTimeout, nullptr, nullptr);
}

OSErr FindOrStart(const Program& inProgram, AppleEvent* ioEvent, UInt32* outNumber) {
    TableFile* table = nullptr;
    std::string folder;
    OSErr err = CurrentTable(&table);
    if (err == noErr) err = RuntimeFolder(&folder);
    if (err != noErr) return err;
    const FileLock turn(folder + "/launch.lock", kTurnPatience);
    if (!turn.IsHeld()) return kLSLaunchInProgressErr;
    const auto running = FindRunning(*table, inProgram);
    if (!running) return Start(*table, inProgram, ioEvent, outNumber);
    *outNumber = *running;
    return ioEvent == nullptr ? OSErr(noErr) : SendTo(*running, ioEvent);
}

bool IsRefusedDaemon(const Program& inProgram, LaunchFlags inFlags) {
    return (inProgram.mode & modeOnlyBackground) != 0 && (inFlags & launchInhibitDaemon) != 0;
}

// A launch has succeeded also when its program cannot come to the front or is already gone.
void BringForward(const ProcessSerialNumber& inPsn, LaunchFlags inFlags) {
    if ((inFlags & launchDontSwitch) == 0) static_cast<void>(SetFrontProcess(&inPsn));
}

OSErr LaunchProgram(const LaunchParamBlockRec& inBlock, AppleEvent* ioEvent, UInt32* outNumber) {
    OSErr err = CheckIn();
    Program program;
    if (err == noErr) err = LaunchableFromSpec(*inBlock.launchAppSpec, &program);
    if (err == noErr && IsRefusedDaemon(program, inBlock.launchControlFlags)) err = appIsDaemon;
    return err != noErr ? err : FindOrStart(program, ioEvent, outNumber);
}

OSErr LaunchWithEvent(const LaunchParamBlockRec& inBlock, UInt32* outNumber) {
    if (inBlock.launchAppParameters == nullptr) return LaunchProgram(inBlock, nullptr, outNumber);
    AppleEvent event = {};
    OSErr err = EventFromParameters(*inBlock.launchAppParameters, &event);
    if (err == noErr) err = LaunchProgram(inBlock, &event, outNumber);
    AEDisposeDesc(&event);
    return err;
}

OSErr Launch(LaunchParamBlockRec* ioBlock) {
    UInt32 number = 0;
    const OSErr err = LaunchWithEvent(*ioBlock, &number);
    if (err != noErr) return err;
    ioBlock->launchProcessSN = {0, number};
    ioBlock->launchPreferredSize = 0;
    ioBlock->launchMinimumSize = 0;
    ioBlock->launchAvailableSize = 0;
    BringForward(ioBlock->launchProcessSN, ioBlock->launchControlFlags);
    return noErr;
}

bool IsExtendedBlock(const LaunchParamBlockRec* inBlock) {
    return inBlock != nullptr && inBlock->launchBlockID == extendedBlock &&
           inBlock->launchEPBLength >= UInt32(extendedBlockLen) &&
           inBlock->launchAppSpec != nullptr;
}

}  // namespace
}  // namespace carbon

OSErr LaunchApplication(LaunchPBPtr LaunchParams) {
    if (!carbon::IsExtendedBlock(LaunchParams)) return paramErr;
    const OSErr err = carbon::Launch(LaunchParams);
    if ((LaunchParams->launchControlFlags & launchContinue) == 0) ExitToShell();
    return err;
}
