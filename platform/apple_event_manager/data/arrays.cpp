// Lists as C arrays, and back.
#include <Carbon/MacMemory.h>

#include <algorithm>
#include <cstring>

#include "apple_event_manager/data/access.h"

namespace carbon {
namespace {

// Writes whole elements into a caller's buffer until one does not fit.
class ElementWriter {
  public:
    ElementWriter(AEArrayData* outArray, Size inSize)
        : mAt(reinterpret_cast<UInt8*>(outArray)), mLeft(size_t(inSize)) {}

    bool HasRoom(size_t inSize) const { return mLeft >= inSize; }
    void Write(const void* inElement, size_t inSize, size_t inStride) {
        if (inSize > 0) std::memcpy(mAt, inElement, inSize);
        const size_t step = std::min(inStride, mLeft);
        mAt += step;
        mLeft -= step;
    }

  private:
    UInt8* mAt;
    size_t mLeft;
};

struct ArrayShape {
    AEArrayType type;
    DescType itemType = typeWildCard;
    size_t itemSize = 0;
    bool isFirst = true;

    bool HasOneSize() const { return type == kAEDataArray || type == kAEPackedArray; }
    bool HoldsDescs() const { return type == kAEDescArray || type == kAEKeyDescArray; }
    size_t Stride() const {
        if (type == kAEHandleArray) return sizeof(Handle);
        if (type == kAEDescArray) return sizeof(AEDesc);
        if (type == kAEKeyDescArray) return sizeof(AEKeyDesc);
        return type == kAEDataArray ? itemSize + itemSize % 2 : itemSize;
    }
    // Whether the item is like those before it, as far as the array asks for that.
    bool Takes(const Item& inItem) {
        if (HoldsDescs()) return true;
        if (isFirst) {
            itemType = inItem.type;
            itemSize = inItem.content.size();
        }
        isFirst = false;
        return inItem.type == itemType && (!HasOneSize() || inItem.content.size() == itemSize);
    }
};

bool IsArrayType(AEArrayType inType) {
    return inType >= kAEDataArray && inType <= kAEKeyDescArray;
}

Handle NewHandleOf(Bytes inData) {
    const Handle handle = NewHandle(Size(inData.size()));
    if (!handle) throw std::bad_alloc();
    if (!inData.empty()) std::memcpy(*handle, inData.data(), inData.size());
    return handle;
}

void WriteElement(const ArrayShape& inShape, AEKeyword inKey, const Item& inItem,
                  ElementWriter& ioWriter) {
    if (inShape.type == kAEHandleArray) {
        const Handle handle = NewHandleOf(inItem.content);
        ioWriter.Write(&handle, sizeof handle, sizeof handle);
    } else if (inShape.type == kAEDescArray) {
        const AEDesc desc = DescOf(inItem);
        ioWriter.Write(&desc, sizeof desc, sizeof desc);
    } else if (inShape.type == kAEKeyDescArray) {
        const AEKeyDesc desc = {inKey, DescOf(inItem)};
        ioWriter.Write(&desc, sizeof desc, sizeof desc);
    } else {
        ioWriter.Write(inItem.content.data(), inItem.content.size(), inShape.Stride());
    }
}

// The last element of a data array may end without its padding.
size_t RoomFor(const ArrayShape& inShape) {
    return inShape.HasOneSize() ? inShape.itemSize : inShape.Stride();
}

// Takes back what was made before memory ran out.
void DisposeElements(AEArrayType inType, AEArrayData* ioArray, SInt32 inCount) {
    for (SInt32 i = 0; i < inCount; ++i) {
        if (inType == kAEHandleArray) DisposeHandle(ioArray->kAEHandleArray[i]);
        if (inType == kAEDescArray) AEDisposeDesc(&ioArray->kAEDescArray[i]);
        if (inType == kAEKeyDescArray) AEDisposeDesc(&ioArray->kAEKeyDescArray[i].descContent);
    }
}

OSErr CheckShape(Storage& inList, ArrayShape& ioShape) {
    for (UInt32 i = 0; i < inList.Count(); ++i)
        if (!ioShape.Takes(inList.ItemAt(inList.PlaceAt(i)))) return errAEWrongDataType;
    return noErr;
}

SInt32 WriteElements(Storage& inList, const ArrayShape& inShape, AEArrayData* outArray,
                     Size inMaximum) {
    ElementWriter writer(outArray, inMaximum);
    SInt32 count = 0;
    try {
        for (; UInt32(count) < inList.Count() && writer.HasRoom(RoomFor(inShape)); ++count) {
            const UInt32 at = inList.PlaceAt(UInt32(count));
            WriteElement(inShape, inList.KeyAt(at), inList.ItemAt(at), writer);
        }
    } catch (const std::bad_alloc&) {
        DisposeElements(inShape.type, outArray, count);
        throw;
    }
    return count;
}

OSErr GetArray(const AEDescList* inList, AEArrayType inType, AEArrayData* outArray, Size inMaximum,
               DescType* outType, Size* outSize, SInt32* outCount) {
    Storage* list = ContainerOf(inList);
    if (!list) return errAENotAEDesc;
    ArrayShape shape{inType};
    if (inType == kAEKeyDescArray && !list->IsKeyed()) return errAEWrongDataType;
    if (const OSErr result = CheckShape(*list, shape); result != noErr) return result;
    const SInt32 count = WriteElements(*list, shape, outArray, inMaximum);
    if (outType) *outType = shape.itemType;
    if (outSize) *outSize = shape.HasOneSize() ? Size(shape.itemSize) : 0;
    if (outCount) *outCount = count;
    return noErr;
}

// One element of the caller's array, as key and item.
Item ReadElement(const ArrayShape& inShape, const AEArrayData* inArray, SInt32 inIndex,
                 AEKeyword* outKey) {
    *outKey = typeWildCard;
    if (inShape.type == kAEDescArray) return ItemOf(inArray->kAEDescArray[inIndex]);
    if (inShape.type == kAEKeyDescArray) {
        *outKey = inArray->kAEKeyDescArray[inIndex].descKey;
        return ItemOf(inArray->kAEKeyDescArray[inIndex].descContent);
    }
    if (inShape.type == kAEHandleArray) {
        const Handle handle = inArray->kAEHandleArray[inIndex];
        if (!handle) return {inShape.itemType, Kind::Leaf, {}};
        return {inShape.itemType, Kind::Leaf,
                Bytes(reinterpret_cast<const UInt8*>(*handle), size_t(GetHandleSize(handle)))};
    }
    const auto* bytes = reinterpret_cast<const UInt8*>(inArray);
    return {inShape.itemType, Kind::Leaf,
            Bytes(bytes + inShape.Stride() * size_t(inIndex), inShape.itemSize)};
}

OSErr FillFrom(Storage& ioList, const ArrayShape& inShape, const AEArrayData* inArray,
               SInt32 inCount) {
    for (SInt32 i = 0; i < inCount; ++i) {
        AEKeyword key = 0;
        const Item item = ReadElement(inShape, inArray, i, &key);
        if (!ioList.FitsFactoring(item)) return errAEWrongDataType;
        if (!Storage::FitsNesting(item)) return paramErr;
        const auto place = ioList.IsKeyed() ? ioList.Find(key) : std::nullopt;
        if (place)
            ioList.Replace(*place, item);
        else
            ioList.Append(key, item);
    }
    return noErr;
}

// Fills a container beside the old one, which stays as it was when an element is refused.
OSErr PutArray(AEDescList* ioList, const ArrayShape& inShape, const AEArrayData* inArray,
               SInt32 inCount) {
    Storage* list = ContainerOf(ioList);
    if (!list) return errAENotAEDesc;
    if (list->IsKeyed() != (inShape.type == kAEKeyDescArray)) return errAEWrongDataType;
    TemporaryDesc filled(ItemOf(*ioList));
    Storage* fresh = StorageOf(*filled);
    fresh->Clear();
    fresh->SetFactoring(list->Factoring());
    const OSErr result = FillFrom(*fresh, inShape, inArray, inCount);
    if (result != noErr) return result;
    AEDisposeDesc(ioList);
    *ioList = filled.Release();
    return noErr;
}

}  // namespace
}  // namespace carbon

using namespace carbon;

OSErr AEGetArray(const AEDescList* theAEDescList, AEArrayType arrayType,
                 AEArrayDataPointer arrayPtr, Size maximumSize, DescType* itemType, Size* itemSize,
                 SInt32* itemCount) {
    if (!theAEDescList || !IsArrayType(arrayType) || maximumSize < 0) return paramErr;
    if (!arrayPtr && maximumSize > 0) return paramErr;
    return Guarded([&] {
        return GetArray(theAEDescList, arrayType, arrayPtr, maximumSize, itemType, itemSize,
                        itemCount);
    });
}

OSErr AEPutArray(AEDescList* theAEDescList, AEArrayType arrayType, const AEArrayData* arrayPtr,
                 DescType itemType, Size itemSize, SInt32 itemCount) {
    if (!theAEDescList || !IsArrayType(arrayType) || itemSize < 0 || itemCount < 0) return paramErr;
    if (!arrayPtr && itemCount > 0) return paramErr;
    const ArrayShape shape{arrayType, itemType, size_t(itemSize), false};
    return Guarded([&] { return PutArray(theAEDescList, shape, arrayPtr, itemCount); });
}
