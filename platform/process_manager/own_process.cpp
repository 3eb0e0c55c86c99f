// Owns the registration of the calling process, from its first call to its end.
#include "process_manager/own_process.h"

#include <Carbon/MacErrors.h>
#include <Carbon/Processes.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>

#include "apple_event_manager/transport/transport.h"
#include "apple_event_manager/watching/watch_page.h"
#include "file_manager/catalog/catalog.h"
#include "posix/across_forks.h"
#include "posix/proc_stat.h"
#include "posix/runtime_folder.h"
#include "process_manager/front.h"
#include "process_manager/identity.h"
#include "process_manager/opening_event.h"
#include "process_manager/process_table.h"
#include "process_manager/slots.h"

namespace carbon {
namespace {

// What the table holds of the caller, kept to be written again into a new table.
struct Own {
    std::atomic<bool> checkedIn = false;
    bool ending = false;  // exit runs; threads that still do find no process here
    bool forked = false;  // a child of a registered process: not a program started by the user
    TableFile* table = nullptr;
    std::atomic<SInt64> looked = 0;  // when the table's file was last found whole
    Slot* slot = nullptr;
    ProcessEntry entry = {};
    LongFacts longFacts = {};
};

std::mutex sLock;
Own sOwn;

void CopyText(const std::string& inText, char* outText, std::size_t inRoom) {
    std::snprintf(outText, inRoom, "%s", inText.c_str());
}

void LeaveTable() {
    const std::lock_guard guard(sLock);
    sOwn.ending = true;
    if (!sOwn.checkedIn) return;
    // The thread that holds the slot may be another one; the kernel lets go of it with the process.
    if (sOwn.table->IsCurrent() && IsOwnNumber(sOwn.slot->number)) Withdraw(*sOwn.slot);
    AnswerQuits();
    StopListening();
    sOwn.checkedIn = false;
}

// A child has the table mapped but is not in it; its parent's entry is not its own.
void BeginAnewInChild() {
    sOwn.forked = sOwn.forked || sOwn.checkedIn;
    sOwn.ending = false;
    sOwn.checkedIn = false;
    sOwn.looked = 0;
    sOwn.slot = nullptr;
    sOwn.entry = {};
}

const HeldAcrossForks sHeld(sLock, {nullptr, BeginAnewInChild});

void InstallEndings() {
    static const bool sInstalled = std::atexit(LeaveTable) == 0;
    static_cast<void>(sInstalled);
}

void DescribeOwn(UInt32 inNumber) {
    const Program program = OwnProgram();
    ProcessEntry& entry = sOwn.entry;
    entry = {};
    entry.psn = {0, inNumber};
    entry.pid = getpid();
    entry.type = program.type;
    entry.signature = program.signature;
    entry.mode = program.mode;
    entry.launchTicks = TicksAtStart(ProcessStartTime(getpid()));
    ShortName(program.fullName, entry.name);
    // A state folder that cannot be written leaves the file spec empty; the process is one all the
    // same.
    if (SpecFromPath(program.executable, &entry.application) != noErr) entry.application = {};
    CopyText(program.executable, sOwn.longFacts.executable, sizeof sOwn.longFacts.executable);
    CopyText(program.bundle, sOwn.longFacts.bundle, sizeof sOwn.longFacts.bundle);
    CopyText(program.fullName, sOwn.longFacts.fullName, sizeof sOwn.longFacts.fullName);
}

// The launcher knows better than the program file what was launched.
void AdoptReservation(TableFile& ioTable, Slot& ioSlot) {
    sOwn.entry = *ReadSlot(ioSlot, ioSlot.number);
    sOwn.entry.starting = false;
    sOwn.longFacts = LongFactsOf(ioTable, ioSlot);
}

void WriteOwnEntry(TableFile& ioTable, Slot& outSlot) {
    LongFactsOf(ioTable, outSlot) = sOwn.longFacts;
    Publish(ioTable, outSlot, sOwn.entry);
    BeginRunning(outSlot);
}

// What the rest of the world may hold on to, once the entry can be seen.
OSErr OpenForEvents(bool inWasLaunched) {
    const OSErr err = StartListening(SocketPathOf(sOwn.entry.psn.lowLongOfPSN));
    if (err != noErr || !inWasLaunched) return err;
    return PostOpeningEvent(sOwn.entry.psn.lowLongOfPSN, sOwn.entry.launcher);
}

Slot* TakeSlot(TableFile& ioTable, bool* outWasLaunched) {
    WithdrawFormerProgram(ioTable);
    Slot* slot = ClaimReservedSlot(ioTable);
    *outWasLaunched = slot != nullptr;
    if (slot == nullptr) slot = ClaimSlot(ioTable);
    if (slot == nullptr) return nullptr;
    if (*outWasLaunched) {
        AdoptReservation(ioTable, *slot);
        BeginRunning(*slot);
    } else {
        DescribeOwn(NewNumber(ioTable));
        WriteOwnEntry(ioTable, *slot);
    }
    return slot;
}

OSErr EnterTable(TableFile& ioTable) {
    bool wasLaunched = false;
    Slot* const slot = TakeSlot(ioTable, &wasLaunched);
    if (slot == nullptr) return memFullErr;
    const OSErr err = OpenForEvents(wasLaunched);
    if (err != noErr) {
        StopListening();
        Withdraw(*slot);
        LetGo(*slot);
        return err;
    }
    sOwn.slot = slot;
    sOwn.entry.socketReady = true;
    slot->socketReady = 1;
    const bool startedByUser = !wasLaunched && !sOwn.forked;
    if (startedByUser && !sOwn.entry.IsBackgroundOnly()) CountAsFronted(ioTable, *slot);
    return noErr;
}

// The new table knows nobody yet. The number stays: others hold it, and the socket is named after
// it.
OSErr MoveToNewTable() {
    // Taking a slot links it with the one this thread holds: that must be safe to touch first.
    sOwn.table->Detach();
    TableFile* table = sOwn.table;
    const OSErr err = TableFile::Open(&table);
    if (err != noErr) return err;
    Slot* const slot = ClaimSlot(*table);
    if (slot == nullptr) return memFullErr;
    sOwn.table = table;
    sOwn.slot = slot;
    OpenWatchPage();  // the folder may be another one
    CountAsGivenOut(*table, sOwn.entry.psn.lowLongOfPSN);
    WriteOwnEntry(*table, *slot);
    slot->socketReady = 1;
    if (!sOwn.entry.IsBackgroundOnly()) CountAsFronted(*table, *slot);
    return noErr;
}

OSErr RenewTable() {
    const std::lock_guard guard(sLock);
    if (sOwn.table->IsCurrent() || sOwn.table->Reopen()) return noErr;
    return MoveToNewTable();
}

OSErr CheckInLocked() {
    if (sOwn.checkedIn) return noErr;
    if (sOwn.ending) return procNotFound;
    if (sOwn.table == nullptr || !sOwn.table->IsCurrent()) {
        const OSErr err = TableFile::Open(&sOwn.table);
        if (err != noErr) return err;
    }
    const OSErr err = EnterTable(*sOwn.table);
    if (err != noErr) return err;
    OpenWatchPage();   // without it nobody sees what the program sends; it goes on
    InstallEndings();  // after the socket's, so that the entry goes before it does
    sOwn.checkedIn = true;
    return noErr;
}

// A look at the file holds for as long as a call may take that made it: a host asks five times for
// one request, and nobody can take the file away and tell of it in so short a time.
bool IsTableCurrent() {
    constexpr SInt64 kMoment = 2000;  // nanoseconds
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    const SInt64 now = SInt64{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
    if (now - sOwn.looked < kMoment && (*sOwn.table)->header.retired == 0) return true;
    sOwn.looked = 0;
    if (!sOwn.table->IsCurrent()) return false;
    sOwn.looked = now;
    return true;
}

}  // namespace

OSErr CheckIn() {
    if (sOwn.checkedIn) return noErr;
    const std::lock_guard guard(sLock);
    return CheckInLocked();
}

OSErr CurrentTable(TableFile** outTable) {
    const OSErr err = CheckIn();
    if (err != noErr) return err;
    const OSErr renewed = IsTableCurrent() ? OSErr(noErr) : RenewTable();
    if (renewed != noErr) return renewed;
    if (sOwn.slot->ownerLost != 0) HoldAgain(*sOwn.slot);
    *outTable = sOwn.table;
    return noErr;
}

const ProcessEntry& CurrentProcess() {
    static const ProcessEntry sNobody = {};
    return CheckIn() == noErr ? sOwn.entry : sNobody;
}

bool IsOwnNumber(UInt32 inNumber) {
    return sOwn.checkedIn && sOwn.entry.psn.lowLongOfPSN == inNumber;
}

UInt32 NumberFromPsn(const ProcessSerialNumber& inPsn) {
    if (inPsn.highLongOfPSN != 0) return 0;
    if (inPsn.lowLongOfPSN == kCurrentProcess) return sOwn.entry.psn.lowLongOfPSN;
    return inPsn.lowLongOfPSN < kFirstNumber ? 0 : inPsn.lowLongOfPSN;
}

bool WasGivenOut(UInt32 inNumber) {
    return inNumber >= kFirstNumber && inNumber < (*sOwn.table)->header.nextNumber;
}

std::string SocketPathOf(UInt32 inNumber) {
    std::string folder;
    char name[16];
    std::snprintf(name, sizeof name, "/%x.sock", inNumber);
    return RuntimeFolder(&folder) == noErr ? folder + name : std::string();
}

}  // namespace carbon
