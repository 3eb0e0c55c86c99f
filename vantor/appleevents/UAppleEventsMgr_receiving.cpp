// What handlers of events need: being installed, checking parameters, finding positions.
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/appleevents/UExtractFromAEDesc.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"

namespace {

constexpr ResType kHandlerTable = 'aedt';
constexpr SInt32 kAllElements = -1;

// One event of a table as it lies in the resource, big-endian.
struct TableEntry {
    UInt32 eventClass, eventID, refCon;
};
static_assert(sizeof(TableEntry) == 12);

OSErr InstallEntry(const TableEntry& inEntry, AEEventHandlerProcPtr inHandler) {
    return AEInstallEventHandler(NativeFromBigEndian(inEntry.eventClass),
                                 NativeFromBigEndian(inEntry.eventID), inHandler,
                                 SInt32(NativeFromBigEndian(inEntry.refCon)), false);
}

OSErr InstallTable(Handle inTable, AEEventHandlerProcPtr inHandler) {
    const auto* entries = reinterpret_cast<const TableEntry*>(*inTable);
    const Size count = GetHandleSize(inTable) / Size(sizeof(TableEntry));
    for (Size i = 0; i < count; ++i)
        if (const OSErr error = InstallEntry(entries[i], inHandler)) return error;
    return noErr;
}

Handle TableAt(SInt16 inIndex) {
    const Handle table = GetIndResource(kHandlerTable, inIndex);
    if (table == nullptr) ThrowResourceError();
    return table;
}

SInt32 AnyOf(SInt32 inItemCount) {
    if (inItemCount <= 0) return 0;
    // Kept: the count is taken as 16 bits, so that elements beyond 65535 are never drawn.
    const auto count = UInt16(inItemCount);
    const auto drawn = UInt16(Random());
    return (count == 0 ? drawn : drawn % count) + 1;
}

SInt32 IndexOfOrdinal(DescType inOrdinal, SInt32 inItemCount) {
    switch (inOrdinal) {
        case kAEFirst:
            return 1;
        case kAEMiddle:
            return SInt32(UInt32(inItemCount) + 1) / 2;
        case kAELast:
            return inItemCount;
        case kAEAny:
            return AnyOf(inItemCount);
        default:
            return 0;
    }
}

// An index as it is, a negative one from the end.
SInt32 FromTheEnd(SInt32 inIndex, SInt32 inItemCount) {
    if (inIndex >= 0) return inIndex;
    const auto index = SInt32(UInt32(inItemCount) + UInt32(inIndex) + 1);
    if (index <= 0) LException::Throw(errAENoSuchObject);
    return index;
}

}  // namespace

void UAppleEventsMgr::InstallAEHandlers(AEEventHandlerProcPtr inHandler) {
    const SInt16 count = CountResources(kHandlerTable);
    for (SInt16 i = 1; i <= count; ++i) {
        const Handle table = TableAt(i);
        HLockHi(table);
        const OSErr error = InstallTable(table, inHandler);
        ReleaseResource(table);
        ThrowIfError(error);
    }
}

void UAppleEventsMgr::CheckForMissedParams(const AppleEvent& inEvent) {
    DescType type = 0;
    Size size = 0;
    const OSErr error =
        AEGetAttributePtr(&inEvent, keyMissedKeywordAttr, typeWildCard, &type, nullptr, 0, &size);
    if (error == noErr) LException::Throw(errAEParamMissed);
    if (error != errAEDescNotFound) ThrowIfError(error);
}

SInt32 UAppleEventsMgr::GetAbsolutePositionIndex(const AEDesc& inKeyData, SInt32 inItemCount) {
    if (inKeyData.descriptorType != DescType(typeAbsoluteOrdinal)) {
        SInt32 index = 0;
        UExtractFromAEDesc::TheSInt32(inKeyData, index);
        return FromTheEnd(index, inItemCount);
    }
    DescType ordinal = 0;
    ThrowIfError(UExtractFromAEDesc::AEGetDescData(inKeyData, &ordinal, sizeof ordinal));
    ordinal = NativeFromBigEndian(ordinal);
    if (ordinal == DescType(kAEAll)) return kAllElements;
    return FromTheEnd(IndexOfOrdinal(ordinal, inItemCount), inItemCount);
}
