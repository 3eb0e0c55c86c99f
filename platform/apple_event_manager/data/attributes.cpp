// Making events and their attributes, the computed 'miss' among them.
#include <array>
#include <set>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/data/access.h"

namespace carbon {
namespace {

// What may be put by anyone, and the type it is kept in. Keys that are not here are free.
struct AttributeRule {
    AEKeyword key;
    DescType type;  // typeWildCard: as it is; typeNull: read only
};
constexpr std::array kRules = {
    AttributeRule{keyEventClassAttr, typeType},
    AttributeRule{keyEventIDAttr, typeType},
    AttributeRule{keyReturnIDAttr, typeSInt16},
    AttributeRule{keyTransactionIDAttr, typeSInt32},
    AttributeRule{keyTimeoutAttr, typeSInt32},
    AttributeRule{keyAcceptTimeoutAttr, typeSInt32},
    AttributeRule{keyOptionalKeywordAttr, typeAEList},
    AttributeRule{keyInteractLevelAttr, typeNull},
    AttributeRule{keyEventSourceAttr, typeNull},
    AttributeRule{keyMissedKeywordAttr, typeNull},
    AttributeRule{keyReplyRequestedAttr, typeNull},
};

DescType TypeOfAttribute(AEKeyword inKey) {
    for (const auto& rule : kRules)
        if (rule.key == inKey) return rule.type;
    return typeWildCard;
}

OSErr PutAttributeAsItIs(AppleEvent* ioEvent, AEKeyword inKey, const Item& inItem) {
    Storage* event = EventOf(ioEvent);
    if (!event) return errAENotAEDesc;
    if (!Storage::FitsNesting(inItem)) return paramErr;
    event->PutAttribute(inKey, inItem);
    return noErr;
}

OSErr PutAttribute(AppleEvent* ioEvent, AEKeyword inKey, const Item& inItem) {
    const DescType type = TypeOfAttribute(inKey);
    if (type == typeNull) return paramErr;
    if (!EventOf(ioEvent)) return errAENotAEDesc;
    TemporaryDesc value;
    const OSErr result = Deliver(inItem, type, value.Get());
    return result == noErr ? PutAttributeAsItIs(ioEvent, inKey, ItemOf(*value)) : result;
}

// The keywords of 'optk'; an entry that is no keyword makes nothing optional.
std::set<AEKeyword> OptionalKeywords(const Storage& inEvent) {
    std::set<AEKeyword> keywords;
    const auto at = inEvent.FindAttribute(keyOptionalKeywordAttr);
    if (!at) return keywords;
    const Item list = inEvent.ItemAt(*at);
    if (list.kind != Kind::List) return keywords;
    const Section section = ItemsOf(list.kind, list.content);
    UInt32 offset = section.begin;
    for (UInt32 i = 0; i < section.count; ++i) {
        const Item item = ReadItem(list.content, offset);
        if (item.content.size() == sizeof(AEKeyword))
            keywords.insert(ReadBigEndian<UInt32>(item.content.data()));
        offset += item.FormSize();
    }
    return keywords;
}

// The first parameter that is neither optional nor fetched yet.
std::optional<AEKeyword> MissedKeyword(Storage& inEvent) {
    std::optional<std::set<AEKeyword>> optional;
    for (UInt32 i = 0; i < inEvent.Count(); ++i) {
        if (inEvent.IsFetched(i)) continue;
        if (!optional) optional = OptionalKeywords(inEvent);
        const AEKeyword key = inEvent.KeyAt(inEvent.PlaceAt(i));
        if (!optional->contains(key)) return key;
    }
    return std::nullopt;
}

template <typename Use>
OSErr WithAttribute(const AppleEvent* inEvent, AEKeyword inKey, Use inUse) {
    if (!inEvent) return paramErr;
    Storage* event = EventOf(inEvent);
    if (!event) return errAENotAEDesc;
    if (inKey == keyMissedKeywordAttr) {
        const auto missed = MissedKeyword(*event);
        if (!missed) return errAEDescNotFound;
        UInt8 bytes[sizeof(AEKeyword)];
        WriteBigEndian(bytes, UInt32(*missed));
        return inUse(Item{typeKeyword, Kind::Leaf, bytes});
    }
    const auto at = event->FindAttribute(inKey);
    return at ? inUse(event->ItemAt(*at)) : OSErr(errAEDescNotFound);
}

// Return IDs run through the positive numbers, so that none comes again before all others did.
AEReturnID NextReturnID() {
    static AEReturnID sLast = 0;
    sLast = AEReturnID(sLast == 0x7FFF ? 1 : sLast + 1);
    return sLast;
}

// For attributes that the event does not have yet.
template <typename Number>
void AddNumber(Storage& ioEvent, AEKeyword inKey, DescType inType, Number inValue) {
    UInt8 bytes[sizeof inValue];
    WriteBigEndian(bytes, inValue);
    ioEvent.AddAttribute(inKey, {inType, Kind::Leaf, bytes});
}

// What another event has there, or else the given item.
void AddSame(Storage& ioEvent, const Storage& inOther, AEKeyword inKey, const Item& inElse) {
    const auto at = inOther.FindAttribute(inKey);
    ioEvent.AddAttribute(inKey, at ? inOther.ItemAt(*at) : inElse);
}

OSErr CreateEvent(AEEventClass inClass, AEEventID inID, const AEAddressDesc* inTarget,
                  AEReturnID inReturnID, AETransactionID inTransaction, AppleEvent* outEvent) {
    const Item target = inTarget ? ItemOf(*inTarget) : Item{};
    auto event = Storage::Empty(Kind::Event, typeAppleEvent);
    if (!Storage::FitsNesting(target)) return paramErr;
    const AEReturnID returnID = inReturnID == kAutoGenerateReturnID ? NextReturnID() : inReturnID;
    AddNumber(*event, keyEventClassAttr, typeType, UInt32(inClass));
    AddNumber(*event, keyEventIDAttr, typeType, UInt32(inID));
    event->AddAttribute(keyAddressAttr, target);
    AddNumber(*event, keyReturnIDAttr, typeSInt16, returnID);
    AddNumber(*event, keyTransactionIDAttr, typeSInt32, inTransaction);
    *outEvent = {typeAppleEvent, HandleOf(std::move(event))};
    return noErr;
}

}  // namespace

OSErr SetEventAttribute(AppleEvent* ioEvent, AEKeyword inKey, DescType inType, const void* inData,
                        Size inSize) {
    const auto item = ItemOf(inType, inData, inSize);
    if (!item) return paramErr;
    return Guarded([&] { return PutAttributeAsItIs(ioEvent, inKey, *item); });
}

OSErr SetEventAttribute(AppleEvent* ioEvent, AEKeyword inKey, const AEDesc& inValue) {
    return Guarded([&] { return PutAttributeAsItIs(ioEvent, inKey, ItemOf(inValue)); });
}

std::optional<ItemView> EventAttribute(const AppleEvent& inEvent, AEKeyword inKey) {
    const Storage* event = EventOf(&inEvent);
    const auto at = event ? event->FindAttribute(inKey) : std::nullopt;
    if (!at) return std::nullopt;
    const Item item = event->ItemAt(*at);
    return ItemView{item.type, item.content};
}

std::optional<UInt32> EventAttribute32(const AppleEvent& inEvent, AEKeyword inKey) {
    const auto view = EventAttribute(inEvent, inKey);
    if (!view || view->data.size() != sizeof(UInt32)) return std::nullopt;
    return ReadBigEndian<UInt32>(view->data.data());
}

std::optional<SInt16> EventAttribute16(const AppleEvent& inEvent, AEKeyword inKey) {
    const auto view = EventAttribute(inEvent, inKey);
    if (!view || view->data.size() != sizeof(SInt16)) return std::nullopt;
    return ReadBigEndian<SInt16>(view->data.data());
}

OSErr MakeReply(const AppleEvent& inRequest, AppleEvent* outReply) {
    static constexpr std::array<UInt8, 4> kZeroBytes = {};
    constexpr Bytes kZeros(kZeroBytes);
    constexpr AEEventClass kReplyClass = 'aevt';
    constexpr AEEventID kReplyID = 'ansr';
    return Making(outReply, [&] {
        Storage* request = EventOf(&inRequest);
        if (!request) return OSErr(errAENotAEDesc);
        auto reply = Storage::Empty(Kind::Event, typeAppleEvent);
        AddNumber(*reply, keyEventClassAttr, typeType, UInt32(kReplyClass));
        AddNumber(*reply, keyEventIDAttr, typeType, UInt32(kReplyID));
        AddSame(*reply, *request, keyAddressAttr, Item{});
        AddSame(*reply, *request, keyReturnIDAttr, {typeSInt16, Kind::Leaf, kZeros.first(2)});
        AddSame(*reply, *request, keyTransactionIDAttr, {typeSInt32, Kind::Leaf, kZeros.first(4)});
        *outReply = {typeAppleEvent, HandleOf(std::move(reply))};
        return OSErr(noErr);
    });
}

}  // namespace carbon

using namespace carbon;

OSErr AECreateAppleEvent(AEEventClass theAEEventClass, AEEventID theAEEventID,
                         const AEAddressDesc* target, AEReturnID returnID,
                         AETransactionID transactionID, AppleEvent* result) {
    return Making(result, [&] {
        return CreateEvent(theAEEventClass, theAEEventID, target, returnID, transactionID, result);
    });
}

OSErr AEGetAttributePtr(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword,
                        DescType desiredType, DescType* typeCode, void* dataPtr, Size maximumSize,
                        Size* actualSize) {
    const Wanted wanted{desiredType, typeCode, dataPtr, maximumSize, actualSize};
    if (!wanted.IsValid()) return paramErr;
    return Guarded([&] {
        return WithAttribute(theAppleEvent, theAEKeyword,
                             [&](const Item& inItem) { return Deliver(inItem, wanted); });
    });
}

OSErr AEGetAttributeDesc(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword,
                         DescType desiredType, AEDesc* result) {
    if (!theAppleEvent) return Making(result, [] { return OSErr(paramErr); });
    const AEDesc source = *theAppleEvent;
    return Making(result, [&] {
        return WithAttribute(&source, theAEKeyword, [&](const Item& inItem) {
            return Deliver(inItem, desiredType, result);
        });
    });
}

OSErr AESizeOfAttribute(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType* typeCode,
                        Size* dataSize) {
    return Guarded([&] {
        return WithAttribute(theAppleEvent, theAEKeyword, [&](const Item& inItem) {
            Measure(inItem, typeCode, dataSize);
            return OSErr(noErr);
        });
    });
}

OSErr AEPutAttributePtr(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType typeCode,
                        const void* dataPtr, Size dataSize) {
    const auto item = ItemOf(typeCode, dataPtr, dataSize);
    if (!theAppleEvent || !item) return paramErr;
    return Guarded([&] { return PutAttribute(theAppleEvent, theAEKeyword, *item); });
}

OSErr AEPutAttributeDesc(AppleEvent* theAppleEvent, AEKeyword theAEKeyword,
                         const AEDesc* theAEDesc) {
    if (!theAppleEvent || !theAEDesc) return paramErr;
    return Guarded([&] { return PutAttribute(theAppleEvent, theAEKeyword, ItemOf(*theAEDesc)); });
}
