// Owns looking processes up: by number, by Linux process, by creator, in launch order.
#include "process_manager/process_table.h"

#include <Carbon/Processes.h>

#include <algorithm>
#include <cstring>

#include "process_manager/own_process.h"
#include "process_manager/slots.h"

namespace carbon {
namespace {

bool AnyProcess(const Slot&) {
    return true;
}

// The living process with the least number above inAfter that passes the test.
template <typename Test>
std::optional<ProcessEntry> FirstAfter(TableFile& ioTable, UInt32 inAfter, Test inTest) {
    for (;;) {
        Slot* best = nullptr;
        UInt32 least = 0;
        const UInt32 used = std::min(kSlotCount, ioTable->header.slotsUsed.load());
        for (Slot* slot = ioTable->slots; slot != ioTable->slots + used; ++slot) {
            const UInt32 number = slot->number;
            if (number > inAfter && (best == nullptr || number < least) && inTest(*slot)) {
                best = slot;
                least = number;
            }
        }
        if (best == nullptr) return std::nullopt;
        if (IsSlotAlive(*best, least)) {
            if (auto entry = ReadSlot(*best, least)) return entry;
        }
        inAfter = least;  // it has ended
    }
}

template <typename Test>
std::optional<ProcessEntry> First(Test inTest) {
    TableFile* table = nullptr;
    if (CurrentTable(&table) != noErr) return std::nullopt;
    return FirstAfter(*table, 0, inTest);
}

const LongFacts* FindLongFacts(const ProcessSerialNumber& inPsn) {
    TableFile* table = nullptr;
    if (CurrentTable(&table) != noErr) return nullptr;
    const Slot* const slot = FindLivingSlot(*table, NumberFromPsn(inPsn));
    return slot == nullptr ? nullptr : &LongFactsOf(*table, *slot);
}

std::string Text(const LongFacts* inFacts, const char* inText, std::size_t inRoom) {
    return inFacts == nullptr ? std::string() : std::string(inText, strnlen(inText, inRoom));
}

}  // namespace

bool ProcessEntry::IsBackgroundOnly() const {
    return (mode & modeOnlyBackground) != 0;
}

std::string ProcessEntry::SocketPath() const {
    return SocketPathOf(psn.lowLongOfPSN);
}

std::optional<ProcessEntry> FindProcess(const ProcessSerialNumber& inPsn) {
    TableFile* table = nullptr;
    if (CurrentTable(&table) != noErr) return std::nullopt;
    const UInt32 number = NumberFromPsn(inPsn);
    const Slot* const slot = FindLivingSlot(*table, number);
    return slot == nullptr ? std::nullopt : ReadSlot(*slot, number);
}

std::optional<ProcessEntry> FindProcessByPid(pid_t inPid) {
    return First([&](const Slot& slot) { return slot.pid == inPid; });
}

std::optional<ProcessEntry> FindProcessBySignature(OSType inSignature) {
    return First([&](const Slot& slot) { return slot.signature == inSignature; });
}

std::optional<ProcessEntry> NextProcess(const ProcessSerialNumber& inPsn) {
    TableFile* table = nullptr;
    if (CurrentTable(&table) != noErr) return std::nullopt;
    return FirstAfter(*table, NumberFromPsn(inPsn), AnyProcess);
}

std::string ExecutablePath(const ProcessSerialNumber& inPsn) {
    const LongFacts* const facts = FindLongFacts(inPsn);
    return Text(facts, facts == nullptr ? nullptr : facts->executable, sizeof facts->executable);
}

std::string BundlePath(const ProcessSerialNumber& inPsn) {
    const LongFacts* const facts = FindLongFacts(inPsn);
    return Text(facts, facts == nullptr ? nullptr : facts->bundle, sizeof facts->bundle);
}

std::string FullName(const ProcessSerialNumber& inPsn) {
    const LongFacts* const facts = FindLongFacts(inPsn);
    return Text(facts, facts == nullptr ? nullptr : facts->fullName, sizeof facts->fullName);
}

}  // namespace carbon
