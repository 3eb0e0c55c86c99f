// Owns the life of one entry, from taking its slot to clearing it away.
#include "process_manager/slots.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include "posix/proc_stat.h"
#include "process_manager/opening_event.h"
#include "process_manager/own_process.h"

namespace carbon {
namespace {

constexpr std::chrono::seconds kReservationPatience(2);

// Takes the slot when nobody alive holds it. The lock of a dead holder is taken over from it.
bool TryHold(Slot& ioSlot) {
    const int err = pthread_mutex_trylock(&ioSlot.owner);
    if (err == EOWNERDEAD) pthread_mutex_consistent(&ioSlot.owner);
    return err == 0 || err == EOWNERDEAD;
}

struct ProgramFile {
    explicit ProgramFile(pid_t inPid) {
        struct stat facts;
        if (stat(("/proc/" + std::to_string(inPid) + "/exe").c_str(), &facts) != 0) return;
        device = facts.st_dev;
        inode = facts.st_ino;
    }
    UInt64 device = 0;
    UInt64 inode = 0;
};

bool RunsItsProgram(const Slot& inSlot) {
    const ProgramFile file(inSlot.pid);
    return file.device == inSlot.programDevice && file.inode == inSlot.programInode;
}

// Of a slot that nobody holds: a program on its way to its first call, or one that has lost the
// thread that held the slot. One that called up another in its place has lost it for good.
bool HasLivingProcess(const Slot& inSlot) {
    if (inSlot.state == SlotState::kLaunching) return false;
    return IsProcessAlive(inSlot.pid, inSlot.startTime) &&
           (inSlot.state == SlotState::kStarting || RunsItsProgram(inSlot));
}

void ClearAway(Slot& ioSlot) {
    const UInt32 number = ioSlot.number;
    Withdraw(ioSlot);
    unlink(SocketPathOf(number).c_str());
    DropOpeningEvent(number);
}

// Nobody held the slot although its number is out: its process is dead, or has only lost the thread
// that held it.
bool ResolveUnheld(Slot& ioSlot, UInt32 inNumber) {
    const bool alive = ioSlot.number == inNumber && HasLivingProcess(ioSlot);
    if (alive && ioSlot.state == SlotState::kRunning) ioSlot.ownerLost = 1;
    if (!alive && ioSlot.number == inNumber) ClearAway(ioSlot);
    LetGo(ioSlot);
    return alive;
}

// The launcher's number stands in the slot until it has been told this process's own.
bool IsReservedByParent(const Slot& inSlot) {
    return inSlot.number != 0 && inSlot.state == SlotState::kLaunching &&
           (inSlot.pid == getppid() || inSlot.pid == getpid());
}

bool IsMine(const Slot& inSlot, SlotState inState) {
    return inSlot.number != 0 && inSlot.state == inState && inSlot.pid == getpid() &&
           inSlot.startTime == ProcessStartTime(getpid());
}

bool IsReservedForMe(const Slot& inSlot) {
    return IsMine(inSlot, SlotState::kStarting);
}

bool IsOfFormerProgram(const Slot& inSlot) {
    return IsMine(inSlot, SlotState::kRunning);
}

template <typename Test>
Slot* FindSlot(TableFile& ioTable, Test inTest) {
    Slot* const begin = ioTable->slots;
    Slot* const end = begin + std::min(kSlotCount, ioTable->header.slotsUsed.load());
    Slot* const found = std::find_if(begin, end, inTest);
    return found == end ? nullptr : found;
}

void RaiseTo(std::atomic<UInt32>& ioValue, UInt32 inLeast) {
    UInt32 value = ioValue;
    while (value < inLeast && !ioValue.compare_exchange_weak(value, inLeast)) {
    }
}

void CountAsUsed(TableFile& ioTable, const Slot& inSlot) {
    RaiseTo(ioTable->header.slotsUsed, UInt32(&inSlot - ioTable->slots) + 1);
}

Slot* ClaimUnusedSlot(TableFile& ioTable) {
    for (Slot& slot : ioTable->slots) {
        if (slot.number != 0 || !TryHold(slot)) continue;
        if (slot.number == 0) return &slot;
        LetGo(slot);
    }
    return nullptr;
}

}  // namespace

void WithdrawFormerProgram(TableFile& ioTable) {
    Slot* const former = FindSlot(ioTable, IsOfFormerProgram);
    if (former == nullptr || !TryHold(*former)) return;
    ClearAway(*former);
    LetGo(*former);
}

Slot* ClaimSlot(TableFile& ioTable) {
    Slot* slot = ClaimUnusedSlot(ioTable);
    if (slot == nullptr) {
        for (Slot& used : ioTable->slots) {
            if (const UInt32 number = used.number) IsSlotAlive(used, number);
        }
        slot = ClaimUnusedSlot(ioTable);
    }
    if (slot != nullptr) CountAsUsed(ioTable, *slot);
    return slot;
}

Slot* ClaimReservedSlot(TableFile& ioTable) {
    const auto deadline = std::chrono::steady_clock::now() + kReservationPatience;
    for (;;) {
        Slot* const mine = FindSlot(ioTable, IsReservedForMe);
        if (mine != nullptr && TryHold(*mine)) return mine;
        Slot* const parents = mine == nullptr ? FindSlot(ioTable, IsReservedByParent) : nullptr;
        const bool pending =
            mine != nullptr || (parents != nullptr && IsSlotAlive(*parents, parents->number));
        if (!pending || std::chrono::steady_clock::now() > deadline) return nullptr;
        std::this_thread::yield();
    }
}

UInt32 NewNumber(TableFile& ioTable) {
    return ioTable->header.nextNumber.fetch_add(1);
}

void CountAsGivenOut(TableFile& ioTable, UInt32 inNumber) {
    RaiseTo(ioTable->header.nextNumber, inNumber + 1);
}

void Publish(TableFile& ioTable, Slot& outSlot, const ProcessEntry& inEntry) {
    outSlot.type = inEntry.type;
    outSlot.signature = inEntry.signature;
    outSlot.mode = inEntry.mode;
    outSlot.launcher = inEntry.launcher.lowLongOfPSN;
    outSlot.launchTicks = inEntry.launchTicks;
    std::memcpy(outSlot.name, inEntry.name, sizeof outSlot.name);
    outSlot.application = inEntry.application;
    outSlot.pid = inEntry.pid;
    outSlot.startTime = 0;
    outSlot.ownerLost = 0;
    outSlot.fronted = 0;
    outSlot.socketReady = 0;
    outSlot.state = SlotState::kLaunching;
    CountAsUsed(ioTable, outSlot);
    outSlot.number = inEntry.psn.lowLongOfPSN;
}

LongFacts& LongFactsOf(TableFile& ioTable, const Slot& inSlot) {
    return ioTable->longFacts[&inSlot - ioTable->slots];
}

void Withdraw(Slot& ioSlot) {
    ioSlot.number = 0;
    ioSlot.state = SlotState::kEmpty;
}

void LetGo(Slot& ioSlot) {
    pthread_mutex_unlock(&ioSlot.owner);
}

// Readers that see the mark gone find the slot held already.
void HoldAgain(Slot& ioSlot) {
    if (TryHold(ioSlot)) ioSlot.ownerLost = 0;
}

void BeginRunning(Slot& ioSlot) {
    const ProgramFile file(getpid());
    ioSlot.programDevice = file.device;
    ioSlot.programInode = file.inode;
    ioSlot.startTime = ProcessStartTime(getpid());
    ioSlot.state = SlotState::kRunning;
}

Slot* FindLivingSlot(TableFile& ioTable, UInt32 inNumber) {
    if (inNumber == 0) return nullptr;
    Slot* const slot = FindSlot(ioTable, [&](const Slot& each) { return each.number == inNumber; });
    return slot != nullptr && IsSlotAlive(*slot, inNumber) ? slot : nullptr;
}

bool IsSlotAlive(Slot& ioSlot, UInt32 inNumber) {
    if (IsOwnNumber(inNumber)) return ioSlot.number == inNumber;
    const bool unheld = ioSlot.state == SlotState::kStarting || ioSlot.ownerLost != 0;
    if (unheld && IsProcessAlive(ioSlot.pid, ioSlot.startTime)) return ioSlot.number == inNumber;
    if (!TryHold(ioSlot)) return ioSlot.number == inNumber;
    return ResolveUnheld(ioSlot, inNumber);
}

std::optional<ProcessEntry> ReadSlot(const Slot& inSlot, UInt32 inNumber) {
    ProcessEntry entry;
    entry.psn = {0, inNumber};
    entry.pid = inSlot.pid;
    entry.type = inSlot.type;
    entry.signature = inSlot.signature;
    entry.mode = inSlot.mode;
    entry.launcher = {0, inSlot.launcher};
    entry.launchTicks = inSlot.launchTicks;
    entry.starting = inSlot.state != SlotState::kRunning;
    entry.socketReady = inSlot.socketReady != 0;
    std::memcpy(entry.name, inSlot.name, sizeof entry.name);
    entry.application = inSlot.application;
    std::atomic_thread_fence(std::memory_order_acquire);
    if (inSlot.number != inNumber) return std::nullopt;
    return entry;
}

}  // namespace carbon
