// Owns the front process and the calls that ask for it and change it.
#include "process_manager/front.h"

#include <Carbon/Processes.h>

#include <algorithm>

#include "apple_event_manager/transport/transport.h"
#include "process_manager/own_process.h"
#include "process_manager/slots.h"

namespace carbon {
namespace {

Slot* LastFronted(TableFile& ioTable) {
    Slot* best = nullptr;
    const UInt32 used = std::min(kSlotCount, ioTable->header.slotsUsed.load());
    for (Slot* slot = ioTable->slots; slot != ioTable->slots + used; ++slot) {
        const UInt64 rank = slot->number != 0 ? slot->fronted.load() : 0;
        if (rank != 0 && (best == nullptr || rank > best->fronted)) best = slot;
    }
    return best;
}

// A program that has not begun to listen, or has just ended, has nothing to redraw: its code is of
// no interest to whoever changes the front.
void TellOfSwitch(UInt32 inOld, UInt32 inNew) {
    if (inOld == inNew) return;
    if (inOld != 0) static_cast<void>(SendControl({0, inOld}, ControlKind::kSuspend));
    static_cast<void>(SendControl({0, inNew}, ControlKind::kResume));
}

OSErr BringToFront(const ProcessSerialNumber& inPsn) {
    TableFile* table = nullptr;
    const OSErr err = CurrentTable(&table);
    if (err != noErr) return err;
    const UInt32 number = NumberFromPsn(inPsn);
    Slot* const slot = FindLivingSlot(*table, number);
    if (slot == nullptr) return procNotFound;
    if ((slot->mode & modeOnlyBackground) != 0) return appIsDaemon;
    const Slot* const front = FrontSlot(*table);
    const UInt32 old = front == nullptr ? 0 : front->number.load();
    CountAsFronted(*table, *slot);
    TellOfSwitch(old, number);
    return noErr;
}

OSErr ReadFront(ProcessSerialNumber* outPsn) {
    TableFile* table = nullptr;
    const OSErr err = CurrentTable(&table);
    if (err != noErr) return err;
    const Slot* const front = FrontSlot(*table);
    const UInt32 number = front == nullptr ? 0 : front->number.load();
    *outPsn = {0, number};
    return number == 0 ? OSErr(procNotFound) : OSErr(noErr);
}

}  // namespace

void CountAsFronted(TableFile& ioTable, Slot& ioSlot) {
    ioSlot.fronted = ioTable->header.nextFronted.fetch_add(1);
}

// Clearing a dead one away takes it out of the comparison, so this ends.
Slot* FrontSlot(TableFile& ioTable) {
    Slot* slot = LastFronted(ioTable);
    while (slot != nullptr) {
        const UInt32 number = slot->number;
        if (number != 0 && IsSlotAlive(*slot, number)) break;
        slot = LastFronted(ioTable);
    }
    return slot;
}

}  // namespace carbon

OSErr GetFrontProcess(ProcessSerialNumber* PSN) {
    return PSN == nullptr ? OSErr(paramErr) : carbon::ReadFront(PSN);
}

OSErr SetFrontProcess(const ProcessSerialNumber* PSN) {
    return PSN == nullptr ? OSErr(paramErr) : carbon::BringToFront(*PSN);
}

OSStatus SetFrontProcessWithOptions(const ProcessSerialNumber* inProcess, OptionBits inOptions) {
    if ((inOptions & ~OptionBits(kSetFrontProcessFrontWindowOnly)) != 0) return paramErr;
    return SetFrontProcess(inProcess);
}
