// Owns the way from an address descriptor to a process.
#include "apple_event_manager/transport/target.h"

#include <Carbon/Endian.h>
#include <Carbon/MacErrors.h>
#include <Carbon/Processes.h>

#include <cstring>
#include <string_view>
#include <vector>

#include "apple_event_manager/internal.h"
#include "core_foundation/internal.h"
#include "process_manager/process_table.h"

namespace carbon {

namespace {

UInt32 Number(std::span<const UInt8> inData, size_t inOffset = 0) {
    UInt32 number = 0;
    if (inData.size() >= inOffset + sizeof number)
        std::memcpy(&number, &inData[inOffset], sizeof number);
    return EndianU32_BtoN(number);
}

OSErr NumberOf(const std::optional<ProcessEntry>& inEntry, ProcessSerialNumber* outPsn) {
    if (!inEntry) return procNotFound;
    *outPsn = inEntry->psn;
    return noErr;
}

OSErr FindByBundleID(std::span<const UInt8> inData, ProcessSerialNumber* outPsn) {
    const std::string_view wanted(reinterpret_cast<const char*>(inData.data()), inData.size());
    for (auto entry = NextProcess({0, 0}); entry; entry = NextProcess(entry->psn)) {
        const std::string path = BundlePath(entry->psn);
        const auto facts = path.empty() ? nullptr : FactsOfBundle(path);
        if (facts && !wanted.empty() && facts->identifier == wanted) return NumberOf(entry, outPsn);
    }
    return procNotFound;
}

OSErr FindByAddress(const ItemView& inAddress, ProcessSerialNumber* outPsn) {
    switch (inAddress.type) {
        case typeProcessSerialNumber:
            if (inAddress.data.size() != sizeof *outPsn) return procNotFound;
            *outPsn = {Number(inAddress.data), Number(inAddress.data, 4)};
            return noErr;
        case typeApplSignature:
            return NumberOf(FindProcessBySignature(Number(inAddress.data)), outPsn);
        case typeKernelProcessID:
            return NumberOf(FindProcessByPid(static_cast<pid_t>(Number(inAddress.data))), outPsn);
        case typeApplicationBundleID:
            return FindByBundleID(inAddress.data, outPsn);
        default:
            return errAEUnknownAddressType;
    }
}

// Another type of address may be one that a coercion makes a known one.
OSErr FindByCoercion(const ItemView& inAddress, ProcessSerialNumber* outPsn) {
    for (const DescType type : {typeProcessSerialNumber, typeApplSignature, typeKernelProcessID,
                                typeApplicationBundleID}) {
        AEDesc known;
        if (AECoercePtr(inAddress.type, inAddress.data.data(),
                        static_cast<Size>(inAddress.data.size()), type, &known) != noErr)
            continue;
        std::vector<UInt8> data(static_cast<size_t>(AEGetDescDataSize(&known)));
        AEGetDescData(&known, data.data(), static_cast<Size>(data.size()));
        const DescType knownType = known.descriptorType;
        AEDisposeDesc(&known);
        if (knownType == type) return FindByAddress({type, data}, outPsn);
    }
    return errAEUnknownAddressType;
}

}  // namespace

OSErr FindTarget(const AppleEvent& inEvent, Target* outTarget) {
    const auto address = EventAttribute(inEvent, keyAddressAttr);
    if (!address) return errAEUnknownAddressType;
    OSErr err = FindByAddress(*address, &outTarget->psn);
    if (err == errAEUnknownAddressType) err = FindByCoercion(*address, &outTarget->psn);
    if (err) return err;
    const ProcessSerialNumber& psn = outTarget->psn;
    const ProcessSerialNumber& own = CurrentProcess().psn;
    if (psn.highLongOfPSN != 0 || psn.lowLongOfPSN == kNoProcess) return procNotFound;
    outTarget->isSelf = psn.lowLongOfPSN == kCurrentProcess || psn.lowLongOfPSN == own.lowLongOfPSN;
    return noErr;
}

}  // namespace carbon
