// Items of records and parameters of events, by keyword.
#include "apple_event_manager/data/access.h"

namespace carbon {
namespace {

OSErr PutParameter(AERecord* ioRecord, AEKeyword inKey, const Item& inItem) {
    Storage* record = KeyedOf(ioRecord);
    if (!record) return errAENotAEDesc;
    if (!Storage::FitsNesting(inItem)) return paramErr;
    if (const auto place = record->Find(inKey))
        record->Replace(*place, inItem);
    else
        record->Append(inKey, inItem);
    return noErr;
}

OSErr PutDescParameter(AERecord* ioRecord, AEKeyword inKey, const AEDesc& inDesc) {
    if (inDesc.dataHandle != ioRecord->dataHandle)
        return PutParameter(ioRecord, inKey, ItemOf(inDesc));
    const TemporaryDesc copy(ItemOf(inDesc));  // a record that goes into itself moves meanwhile
    return PutParameter(ioRecord, inKey, ItemOf(*copy));
}

template <typename Use>
OSErr WithParameter(const AERecord* inRecord, AEKeyword inKey, Use inUse) {
    if (!inRecord) return paramErr;
    Storage* record = KeyedOf(inRecord);
    if (!record) return errAENotAEDesc;
    const auto place = record->Find(inKey);
    return place ? inUse(*record, *place) : OSErr(errAEDescNotFound);
}

OSErr FetchPtr(Storage& inRecord, const Place& inPlace, const Wanted& inWanted) {
    const Item item = inRecord.ItemAt(inPlace.at);
    const bool asksForSizeOnly = inWanted.maximumSize == 0 && !item.content.empty();
    const OSErr result = Deliver(item, inWanted);
    if (result == noErr && !asksForSizeOnly) inRecord.MarkFetched(inPlace.position);
    return result;
}

OSErr FetchDesc(Storage& inRecord, const Place& inPlace, DescType inType, AEDesc* outDesc) {
    const Item item = inRecord.ItemAt(inPlace.at);
    const bool isWhole = item.IsContainer() && (inType == typeWildCard || inType == item.type);
    if (isWhole) *outDesc = {item.type, HandleOf(Storage::OfItemIn(inRecord, inPlace.at))};
    const OSErr result = isWhole ? OSErr(noErr) : Deliver(item, inType, outDesc);
    if (result == noErr) inRecord.MarkFetched(inPlace.position);
    return result;
}

}  // namespace

std::optional<ItemView> EventParameter(const AppleEvent& inEvent, AEKeyword inKey) {
    Storage* event = EventOf(&inEvent);
    const auto place = event ? event->Find(inKey) : std::nullopt;
    if (!place) return std::nullopt;
    const Item item = event->ItemAt(place->at);
    return ItemView{item.type, item.content};
}

}  // namespace carbon

using namespace carbon;

OSErr AEPutParamPtr(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType typeCode,
                    const void* dataPtr, Size dataSize) {
    const auto item = ItemOf(typeCode, dataPtr, dataSize);
    if (!theAppleEvent || !item) return paramErr;
    return Guarded([&] { return PutParameter(theAppleEvent, theAEKeyword, *item); });
}

OSErr AEPutParamDesc(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, const AEDesc* theAEDesc) {
    if (!theAppleEvent || !theAEDesc) return paramErr;
    return Guarded([&] { return PutDescParameter(theAppleEvent, theAEKeyword, *theAEDesc); });
}

OSErr AEGetParamPtr(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                    DescType* actualType, void* dataPtr, Size maximumSize, Size* actualSize) {
    const Wanted wanted{desiredType, actualType, dataPtr, maximumSize, actualSize};
    if (!wanted.IsValid()) return paramErr;
    return Guarded([&] {
        return WithParameter(theAppleEvent, theAEKeyword,
                             [&](Storage& inRecord, const Place& inPlace) {
                                 return FetchPtr(inRecord, inPlace, wanted);
                             });
    });
}

OSErr AEGetParamDesc(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                     AEDesc* result) {
    if (!theAppleEvent) return Making(result, [] { return OSErr(paramErr); });
    const AEDesc source = *theAppleEvent;
    return Making(result, [&] {
        return WithParameter(&source, theAEKeyword, [&](Storage& inRecord, const Place& inPlace) {
            return FetchDesc(inRecord, inPlace, desiredType, result);
        });
    });
}

OSErr AESizeOfParam(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType* typeCode,
                    Size* dataSize) {
    return Guarded([&] {
        return WithParameter(theAppleEvent, theAEKeyword,
                             [&](Storage& inRecord, const Place& inPlace) {
                                 Measure(inRecord.ItemAt(inPlace.at), typeCode, dataSize);
                                 return OSErr(noErr);
                             });
    });
}

OSErr AEDeleteParam(AppleEvent* theAppleEvent, AEKeyword theAEKeyword) {
    return Guarded([&] {
        return WithParameter(theAppleEvent, theAEKeyword,
                             [](Storage& ioRecord, const Place& inPlace) {
                                 ioRecord.Erase(inPlace);
                                 return OSErr(noErr);
                             });
    });
}
