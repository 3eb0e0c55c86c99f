// The order in which coercions are tried, and the built-in ones that concern structure and codes.
#include "apple_event_manager/coercions/coercion.h"

#include <Carbon/AERegistry.h>

#include <algorithm>

#include "apple_event_manager/big_endian.h"

namespace carbon {
namespace {

// With the numbers, texts and file types, all that a record cannot be called.
constexpr DescType kPlainTypes[] = {
    typeBoolean,
    typeEnumerated,
    typeType,
    typeKeyword,
    typeTrue,
    typeFalse,
    typeNull,
    typeAlias,
    typeFSS,
    typeFSRef,
    typeFileURL,
    typeAEList,
    typeAppleEvent,
    typeAppParameters,
    typeApplSignature,
    typeProcessSerialNumber,
    typeKernelProcessID,
    typeApplicationBundleID,
    typeApplicationURL,
    typeMachPort,
    typeQDRectangle,
    typeFixed,
    typeSectionH,
    typeEventRecord,
    typeQDPoint,
    typeLongDateTime,
    type128BitFloatingPoint,
    typeDecimalStruct,
};

bool IsCodeType(DescType inType) {
    return inType == typeType || inType == typeEnumerated || inType == typeKeyword ||
           inType == typeProperty;
}

OSErr MakeLeaf(DescType inType, Bytes inData, AEDesc* outDesc) {
    *outDesc = {inType, HandleOf(Storage::OfLeaf(inType, inData))};
    return noErr;
}

OSErr MakeOneItemList(const Item& inItem, AEDesc* outDesc) {
    auto list = Storage::Empty(Kind::List, typeAEList);
    if (!Storage::FitsNesting(inItem)) return errAECoercionFail;
    list->Append(typeWildCard, inItem);
    *outDesc = {typeAEList, HandleOf(std::move(list))};
    return noErr;
}

// The items without their keywords.
OSErr MakeListOfItems(const Item& inRecord, AEDesc* outDesc) {
    auto list = Storage::Empty(Kind::List, typeAEList);
    const Section section = ItemsOf(inRecord.kind, inRecord.content);
    UInt32 at = section.begin;
    for (UInt32 i = 0; i < section.count; ++i) {
        const Item item = ReadItem(inRecord.content, at + section.keySize);
        list->Append(typeWildCard, item);
        at += section.keySize + item.FormSize();
    }
    *outDesc = {typeAEList, HandleOf(std::move(list))};
    return noErr;
}

OSErr CoerceOnlyItem(const Item& inList, DescType inType, AEDesc* outDesc) {
    const Section section = ItemsOf(inList.kind, inList.content);
    if (section.count != 1) return errAECoercionFail;
    return Deliver(ReadItem(inList.content, section.begin), inType, outDesc);
}

OSErr MakeRecord(DescType inType, Bytes inContent, AEDesc* outDesc) {
    *outDesc = {inType, HandleOf(Storage::OfItem({inType, Kind::Record, inContent}))};
    return noErr;
}

OSErr MakeRecordOfParameters(const Item& inEvent, AEDesc* outDesc) {
    const Section section = ItemsOf(inEvent.kind, inEvent.content);
    std::vector<UInt8> content(wire::kListHeader);
    WriteBigEndian(content.data(), section.count);
    content.insert(content.end(), inEvent.content.begin() + section.begin,
                   inEvent.content.begin() + section.end);
    return MakeRecord(typeAERecord, content, outDesc);
}

// What LaunchApplication takes: an event record, eight bytes about the message, the message.
OSErr MakeAppParameters(const Item& inEvent, AEDesc* outDesc) {
    constexpr size_t kMessageAt = 2, kWhereAt = 10, kLengthAt = 20, kHead = 24;
    constexpr UInt16 kHighLevelEvent = 23;
    const TemporaryDesc event(inEvent);
    const Bytes form = EventBytes(*event);
    std::vector<UInt8> bytes(kHead);
    WriteBigEndian(bytes.data(), kHighLevelEvent);
    WriteBigEndian(bytes.data() + kMessageAt,
                   EventAttribute32(*event, keyEventClassAttr).value_or(0));
    WriteBigEndian(bytes.data() + kWhereAt, EventAttribute32(*event, keyEventIDAttr).value_or(0));
    WriteBigEndian(bytes.data() + kLengthAt, UInt32(form.size()));
    bytes.insert(bytes.end(), form.begin(), form.end());
    return MakeLeaf(typeAppParameters, bytes, outDesc);
}

OSErr CoerceEvent(const Item& inEvent, DescType inType, AEDesc* outDesc) {
    if (inType == typeAppParameters) return MakeAppParameters(inEvent, outDesc);
    if (inType == typeAERecord) return MakeRecordOfParameters(inEvent, outDesc);
    return errAECoercionFail;
}

}  // namespace

bool IsPlainType(DescType inType) {
    return IsNumberType(inType) || IsTextType(inType) ||
           std::ranges::find(kPlainTypes, inType) != std::end(kPlainTypes);
}

OSErr CoerceContainer(const Item& inItem, DescType inType, AEDesc* outDesc) {
    const bool isPlainRecord = inItem.kind == Kind::Record && inItem.type == typeAERecord;
    if (inType == typeAEList)
        return isPlainRecord ? MakeListOfItems(inItem, outDesc) : MakeOneItemList(inItem, outDesc);
    if (inItem.kind == Kind::List) return CoerceOnlyItem(inItem, inType, outDesc);
    if (inItem.kind == Kind::Event) return CoerceEvent(inItem, inType, outDesc);
    if (inItem.kind == Kind::Record && !IsPlainType(inType))
        return MakeRecord(inType, inItem.content, outDesc);
    return errAECoercionFail;
}

OSErr CoerceCode(const Item& inItem, DescType inType, AEDesc* outDesc) {
    const bool isCode = IsCodeType(inItem.type) && inItem.content.size() == sizeof(DescType);
    if (isCode && inItem.type == typeEnumerated && inType == typeBoolean) {
        const auto code = ReadBigEndian<UInt32>(inItem.content.data());
        if (code != typeTrue && code != typeFalse) return errAECoercionFail;
        const UInt8 value = code == typeTrue;
        return MakeLeaf(typeBoolean, {&value, 1}, outDesc);
    }
    if (isCode && IsTextType(inType))
        return CoerceText({typeChar, Kind::Leaf, inItem.content}, inType, outDesc);
    if (IsTextType(inItem.type) && IsCodeType(inType)) {
        TemporaryDesc text;
        const OSErr result = Deliver(inItem, typeChar, text.Get());
        const Bytes data = ItemOf(*text).content;
        if (result != noErr || data.size() != sizeof(DescType)) return errAECoercionFail;
        return MakeLeaf(inType, data, outDesc);
    }
    return errAECoercionFail;
}

OSErr Coerce(const Item& inItem, const AEDesc* inWhole, DescType inType, AEDesc* outDesc) {
    const OSErr handled = CoerceByHandlers(inItem, inWhole, inType, outDesc);
    if (handled != errAECoercionFail) return handled;
    if (inItem.IsContainer() || inType == typeAEList)
        return CoerceContainer(inItem, inType, outDesc);
    for (const auto family : {CoerceNumber, CoerceText, CoerceCode, CoerceFile})
        if (const OSErr result = family(inItem, inType, outDesc); result != errAECoercionFail)
            return result;
    return errAECoercionFail;
}

}  // namespace carbon
