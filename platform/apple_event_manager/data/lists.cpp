// Lists, and the items of any container by index.
#include "apple_event_manager/data/access.h"

namespace carbon {
namespace {

OSErr CreateContainer(const void* inFactoring, Size inSize, bool inIsRecord, AEDesc* outList) {
    const bool isWellFormed = inSize == 0 || (inFactoring && inSize >= kAEDescListFactorType);
    if (!isWellFormed || (inIsRecord && inSize > 0)) return paramErr;
    const DescType type = inIsRecord ? DescType(typeAERecord) : DescType(typeAEList);
    auto storage = Storage::Empty(inIsRecord ? Kind::Record : Kind::List, type);
    storage->SetFactoring({static_cast<const UInt8*>(inFactoring), size_t(inSize)});
    *outList = {type, HandleOf(std::move(storage))};
    return noErr;
}

OSErr PutAt(Storage& ioList, SInt32 inIndex, const Item& inItem) {
    if (!ioList.FitsFactoring(inItem)) return errAEWrongDataType;
    if (!Storage::FitsNesting(inItem)) return paramErr;
    const SInt64 count = ioList.Count();
    if (inIndex < 0 || inIndex > count + 1) return errAEIllegalIndex;
    if (inIndex == 0 || inIndex == count + 1) {
        ioList.Append(typeWildCard, inItem);
    } else {
        const UInt32 position = UInt32(inIndex) - 1;
        ioList.Replace({position, ioList.PlaceAt(position)}, inItem);
    }
    return noErr;
}

OSErr PutInList(AEDescList* ioList, SInt32 inIndex, const Item& inItem) {
    Storage* list = ContainerOf(ioList);
    if (!list) return errAENotAEDesc;
    if (list->GetKind() != Kind::List) return errAEWrongDataType;
    return PutAt(*list, inIndex, inItem);
}

OSErr PutDescInList(AEDescList* ioList, SInt32 inIndex, const AEDesc& inDesc) {
    if (inDesc.dataHandle != ioList->dataHandle) return PutInList(ioList, inIndex, ItemOf(inDesc));
    const TemporaryDesc copy(
        ItemOf(inDesc));  // a list that goes into itself moves while it is read
    return PutInList(ioList, inIndex, ItemOf(*copy));
}

struct Found {
    AEKeyword key;
    Item item;
};

std::optional<Found> ItemNumber(Storage& inContainer, SInt32 inIndex) {
    if (inIndex < 1 || UInt32(inIndex) > inContainer.Count()) return std::nullopt;
    const UInt32 at = inContainer.PlaceAt(UInt32(inIndex) - 1);
    return Found{inContainer.KeyAt(at), inContainer.ItemAt(at)};
}

// Finds an item and hands it on; the code for a missing one differs between getting and deleting.
template <typename Use>
OSErr WithItem(const AEDescList* inList, SInt32 inIndex, Use inUse) {
    if (!inList) return paramErr;
    Storage* container = ContainerOf(inList);
    if (!container) return errAENotAEDesc;
    const auto found = ItemNumber(*container, inIndex);
    return found ? inUse(*found) : OSErr(errAEDescNotFound);
}

OSErr DeleteAt(AEDescList* ioList, SInt32 inIndex) {
    Storage* container = ContainerOf(ioList);
    if (!container) return errAENotAEDesc;
    if (inIndex < 1 || UInt32(inIndex) > container->Count()) return errAEBadListItem;
    const UInt32 position = UInt32(inIndex) - 1;
    container->Erase({position, container->PlaceAt(position)});
    return noErr;
}

}  // namespace
}  // namespace carbon

using namespace carbon;

OSErr AECreateList(const void* factoringPtr, Size factoredSize, Boolean isRecord,
                   AEDescList* resultList) {
    return Making(resultList, [&] {
        return CreateContainer(factoringPtr, factoredSize, isRecord != 0, resultList);
    });
}

OSErr AECountItems(const AEDescList* theAEDescList, SInt32* theCount) {
    if (!theAEDescList || !theCount) return paramErr;
    const Storage* container = ContainerOf(theAEDescList);
    if (!container) return errAENotAEDesc;
    *theCount = SInt32(container->Count());
    return noErr;
}

OSErr AEPutPtr(AEDescList* theAEDescList, SInt32 index, DescType typeCode, const void* dataPtr,
               Size dataSize) {
    const auto item = ItemOf(typeCode, dataPtr, dataSize);
    if (!theAEDescList || !item) return paramErr;
    return Guarded([&] { return PutInList(theAEDescList, index, *item); });
}

OSErr AEPutDesc(AEDescList* theAEDescList, SInt32 index, const AEDesc* theAEDesc) {
    if (!theAEDescList || !theAEDesc) return paramErr;
    return Guarded([&] { return PutDescInList(theAEDescList, index, *theAEDesc); });
}

OSErr AEGetNthPtr(const AEDescList* theAEDescList, SInt32 index, DescType desiredType,
                  AEKeyword* theAEKeyword, DescType* typeCode, void* dataPtr, Size maximumSize,
                  Size* actualSize) {
    const Wanted wanted{desiredType, typeCode, dataPtr, maximumSize, actualSize};
    if (!wanted.IsValid()) return paramErr;
    return Guarded([&] {
        return WithItem(theAEDescList, index, [&](const Found& inFound) {
            if (theAEKeyword) *theAEKeyword = inFound.key;
            return Deliver(inFound.item, wanted);
        });
    });
}

OSErr AEGetNthDesc(const AEDescList* theAEDescList, SInt32 index, DescType desiredType,
                   AEKeyword* theAEKeyword, AEDesc* result) {
    if (!theAEDescList) return Making(result, [] { return OSErr(paramErr); });
    const AEDesc source = *theAEDescList;
    return Making(result, [&] {
        return WithItem(&source, index, [&](const Found& inFound) {
            if (theAEKeyword) *theAEKeyword = inFound.key;
            return Deliver(inFound.item, desiredType, result);
        });
    });
}

OSErr AESizeOfNthItem(const AEDescList* theAEDescList, SInt32 index, DescType* typeCode,
                      Size* dataSize) {
    return Guarded([&] {
        return WithItem(theAEDescList, index, [&](const Found& inFound) {
            Measure(inFound.item, typeCode, dataSize);
            return OSErr(noErr);
        });
    });
}

OSErr AEDeleteItem(AEDescList* theAEDescList, SInt32 index) {
    if (!theAEDescList) return paramErr;
    return Guarded([&] { return DeleteAt(theAEDescList, index); });
}
