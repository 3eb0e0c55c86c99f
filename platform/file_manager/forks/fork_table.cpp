// Owns the numbers of open forks.
#include "file_manager/forks/fork_table.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <limits>
#include <mutex>
#include <unordered_map>

#include "posix/across_forks.h"

namespace carbon {

namespace {

constexpr SInt16 kLastNumber = std::numeric_limits<SInt16>::max();

struct Slot {
    std::shared_ptr<OpenFork> fork;
    UInt64 turn;  // of its opening
};

struct Table {
    std::mutex mutex;  // no shared one: those know their writer, whose number is another in a child
    std::unordered_map<SInt16, Slot> slots;
    UInt64 turns = 0;
    SInt16 last = 0;
};

Table& TheTable() {
    static Table& sTable = *new Table;  // outlives every static that may still close a fork
    return sTable;
}

const HeldAcrossForks sHeld(TheTable().mutex);

SInt16 NextNumber(Table* ioTable) {
    do {
        ioTable->last = ioTable->last == kLastNumber ? SInt16(1) : SInt16(ioTable->last + 1);
    } while (ioTable->slots.contains(ioTable->last));
    return ioTable->last;
}

OSErr ErrorOfNumber(SInt16 inNumber) {
    return inNumber <= 0 ? OSErr(rfNumErr) : OSErr(fnOpnErr);
}

}  // namespace

OSErr AddOpenFork(std::shared_ptr<OpenFork> inFork, SInt16* outNumber) {
    Table& table = TheTable();
    const std::lock_guard lock(table.mutex);
    if (table.slots.size() >= size_t(kLastNumber)) return tmfoErr;
    *outNumber = NextNumber(&table);
    table.slots[*outNumber] = {std::move(inFork), ++table.turns};
    return noErr;
}

OSErr FindOpenFork(SInt16 inNumber, std::shared_ptr<OpenFork>* outFork) {
    Table& table = TheTable();
    const std::lock_guard lock(table.mutex);
    const auto found = table.slots.find(inNumber);
    if (found == table.slots.end()) return ErrorOfNumber(inNumber);
    *outFork = found->second.fork;
    return noErr;
}

OSErr TakeOpenFork(SInt16 inNumber, std::shared_ptr<OpenFork>* outFork) {
    Table& table = TheTable();
    const std::lock_guard lock(table.mutex);
    const auto found = table.slots.find(inNumber);
    if (found == table.slots.end()) return ErrorOfNumber(inNumber);
    *outFork = std::move(found->second.fork);
    table.slots.erase(found);
    return noErr;
}

std::vector<NumberedFork> OpenForksInOrder() {
    Table& table = TheTable();
    const std::lock_guard lock(table.mutex);
    std::vector<NumberedFork> forks;
    for (const auto& [number, slot] : table.slots) forks.push_back({number, slot.fork});
    std::sort(forks.begin(), forks.end(), [&](const auto& a, const auto& b) {
        return table.slots.at(a.number).turn < table.slots.at(b.number).turn;
    });
    return forks;
}

std::vector<NumberedFork> OpenPathsTo(dev_t inDevice, ino_t inInode, Fork inFork) {
    auto forks = OpenForksInOrder();
    std::erase_if(forks, [&](const NumberedFork& inPath) {
        return !inPath.fork->IsSameFork(inDevice, inInode, inFork);
    });
    return forks;
}

bool HasOpenForks(FSVolumeRefNum inVolume) {
    const auto forks = OpenForksInOrder();
    return std::any_of(forks.begin(), forks.end(), [&](const auto& inFork) {
        return inFork.fork->GetFacts().spec.vRefNum == inVolume;
    });
}

UInt8 OpenForkAttributes(dev_t inDevice, ino_t inInode) {
    UInt8 attributes = 0;
    Table& table = TheTable();
    const std::lock_guard lock(table.mutex);
    for (const auto& [number, slot] : table.slots) {
        if (slot.fork->IsSameFork(inDevice, inInode, Fork::kData))
            attributes |= kioFlAttribDataOpenMask | kioFlAttribFileOpenMask;
        if (slot.fork->IsSameFork(inDevice, inInode, Fork::kResource))
            attributes |= kioFlAttribResOpenMask | kioFlAttribFileOpenMask;
    }
    return attributes;
}

bool IsOpenSomewhere(const std::string& inPath) {
    return IsAnyForkInUse(inPath);
}

}  // namespace carbon
