// From a caller's AEDesc to what lies behind it and back; handing data to callers.
#include "apple_event_manager/data/access.h"

#include <algorithm>
#include <cstring>

#include "apple_event_manager/coercions/coercion.h"

namespace carbon {

bool IsNullDesc(const AEDesc& inDesc) {
    return inDesc.descriptorType == typeNull && !inDesc.dataHandle;
}

Item ItemOf(const AEDesc& inDesc) {
    const Storage* storage = StorageOf(inDesc);
    if (!storage) return {inDesc.descriptorType, Kind::Leaf, {}};
    return {inDesc.descriptorType, storage->GetKind(), storage->Content(), storage->DepthAtMost()};
}

std::optional<Item> ItemOf(DescType inType, const void* inData, Size inSize) {
    if (inSize < 0 || (!inData && inSize > 0)) return std::nullopt;
    return Item{inType, Kind::Leaf, Bytes(static_cast<const UInt8*>(inData), size_t(inSize))};
}

void MakeDesc(const Item& inItem, AEDesc* outDesc) {
    const bool isNull = inItem.type == typeNull && !inItem.IsContainer() && inItem.content.empty();
    const AEDataStorage handle = isNull ? nullptr : HandleOf(Storage::OfItem(inItem));
    outDesc->descriptorType = inItem.type;
    outDesc->dataHandle = handle;
}

AEDesc DescOf(const Item& inItem) {
    AEDesc desc;
    MakeDesc(inItem, &desc);
    return desc;
}

Storage* ContainerOf(const AEDesc* inDesc) {
    Storage* storage = StorageOf(*inDesc);
    return storage && storage->GetKind() != Kind::Leaf ? storage : nullptr;
}

Storage* KeyedOf(const AEDesc* inDesc) {
    Storage* storage = StorageOf(*inDesc);
    return storage && storage->IsKeyed() ? storage : nullptr;
}

Storage* EventOf(const AEDesc* inDesc) {
    Storage* storage = StorageOf(*inDesc);
    return storage && storage->GetKind() == Kind::Event ? storage : nullptr;
}

void Measure(const Item& inItem, DescType* outType, Size* outSize) {
    if (outType) *outType = inItem.type;
    if (outSize) *outSize = Size(inItem.content.size());
}

OSErr Deliver(const Item& inItem, const Wanted& inWanted) {
    if (inWanted.type != typeWildCard && inWanted.type != inItem.type) {
        TemporaryDesc coerced;
        const OSErr result = Coerce(inItem, nullptr, inWanted.type, coerced.Get());
        if (result != noErr) return result;
        Wanted asItIs = inWanted;
        asItIs.type = typeWildCard;
        return Deliver(ItemOf(*coerced), asItIs);
    }
    Measure(inItem, inWanted.actualType, inWanted.actualSize);
    const size_t size = std::min(inItem.content.size(), size_t(inWanted.maximumSize));
    if (size > 0) std::memcpy(inWanted.buffer, inItem.content.data(), size);
    return noErr;
}

OSErr Deliver(const Item& inItem, DescType inDesiredType, AEDesc* outDesc) {
    if (inDesiredType != typeWildCard && inDesiredType != inItem.type)
        return Coerce(inItem, nullptr, inDesiredType, outDesc);
    MakeDesc(inItem, outDesc);
    return noErr;
}

}  // namespace carbon
