// The calls on single descriptors: making, copying, reading, replacing and disposing them.
#include <algorithm>

#include "apple_event_manager/coercions/coercion.h"
#include "apple_event_manager/data/access.h"

namespace carbon {
namespace {

OSErr Create(DescType inType, const void* inData, Size inSize, AEDesc* outDesc) {
    const auto item = ItemOf(inType, inData, inSize);
    if (!item) return paramErr;
    MakeDesc(*item, outDesc);
    return noErr;
}

OSErr Duplicate(const AEDesc& inDesc, AEDesc* outDesc) {
    if (!inDesc.dataHandle) {
        *outDesc = inDesc;
        return noErr;
    }
    MakeDesc(ItemOf(inDesc), outDesc);
    return noErr;
}

OSErr Borrow(DescType inType, const void* inData, Size inSize, AEDisposeExternalUPP inCallback,
             SInt32 inRefCon, AEDesc* outDesc) {
    const auto item = ItemOf(inType, inData, inSize);
    if (!item) return paramErr;
    *outDesc = {inType, HandleOf(Storage::OfExternal(inType, item->content, inCallback, inRefCon))};
    return noErr;
}

OSErr ReplaceData(DescType inType, const void* inData, Size inSize, AEDesc* ioDesc) {
    const auto item = ItemOf(inType, inData, inSize);
    if (!item) return paramErr;
    if (Storage* storage = StorageOf(*ioDesc)) {
        storage->ReplaceWithLeaf(inType, item->content);
        ioDesc->descriptorType = inType;
    } else {
        MakeDesc(*item, ioDesc);
    }
    return noErr;
}

OSErr CopyRange(Bytes inData, void* outBuffer, Size inOffset, Size inLength) {
    if (!outBuffer && inLength > 0) return paramErr;
    const SInt64 end = SInt64(inOffset) + inLength;
    if (inOffset < 0 || inLength < 0 || end > SInt64(inData.size())) return errAEBufferTooSmall;
    if (inLength > 0)
        std::copy_n(inData.data() + inOffset, inLength, static_cast<UInt8*>(outBuffer));
    return noErr;
}

OSErr CoerceWhole(const AEDesc& inDesc, DescType inType, AEDesc* outDesc) {
    if (inType == typeWildCard || inType == inDesc.descriptorType)
        return Duplicate(inDesc, outDesc);
    return Coerce(ItemOf(inDesc), &inDesc, inType, outDesc);
}

OSErr CoerceBytes(DescType inFrom, const void* inData, Size inSize, DescType inTo,
                  AEDesc* outDesc) {
    const auto item = ItemOf(inFrom, inData, inSize);
    return item ? Deliver(*item, inTo, outDesc) : OSErr(paramErr);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

void AEInitializeDesc(AEDesc* desc) {
    if (desc) *desc = kNullDesc;
}

OSErr AECreateDesc(DescType typeCode, const void* dataPtr, Size dataSize, AEDesc* result) {
    return Making(result, [&] { return Create(typeCode, dataPtr, dataSize, result); });
}

OSErr AEDisposeDesc(AEDesc* theAEDesc) {
    if (!theAEDesc) return noErr;
    const std::unique_ptr<Storage> storage(StorageOf(*theAEDesc));
    *theAEDesc = kNullDesc;
    return noErr;
}

OSErr AEDuplicateDesc(const AEDesc* theAEDesc, AEDesc* result) {
    if (!theAEDesc) return Making(result, [] { return OSErr(paramErr); });
    const AEDesc source = *theAEDesc;
    return Making(result, [&] { return Duplicate(source, result); });
}

OSStatus AECreateDescFromExternalPtr(DescType descriptorType, const void* dataPtr, Size dataLength,
                                     AEDisposeExternalUPP disposeCallback, SInt32 disposeRefcon,
                                     AEDesc* theDesc) {
    return Making(theDesc, [&] {
        return Borrow(descriptorType, dataPtr, dataLength, disposeCallback, disposeRefcon, theDesc);
    });
}

OSErr AECoercePtr(DescType typeCode, const void* dataPtr, Size dataSize, DescType toType,
                  AEDesc* result) {
    return Making(result, [&] { return CoerceBytes(typeCode, dataPtr, dataSize, toType, result); });
}

OSErr AECoerceDesc(const AEDesc* theAEDesc, DescType toType, AEDesc* result) {
    if (!theAEDesc) return Making(result, [] { return OSErr(paramErr); });
    const AEDesc source = *theAEDesc;
    return Making(result, [&] { return CoerceWhole(source, toType, result); });
}

Boolean AECheckIsRecord(const AEDesc* theDesc) {
    return theDesc && KeyedOf(theDesc);
}

OSErr AEGetDescData(const AEDesc* theAEDesc, void* dataPtr, Size maximumSize) {
    const Wanted wanted{typeWildCard, nullptr, dataPtr, maximumSize, nullptr};
    if (!theAEDesc || !wanted.IsValid()) return paramErr;
    return Deliver(ItemOf(*theAEDesc), wanted);
}

Size AEGetDescDataSize(const AEDesc* theAEDesc) {
    return theAEDesc ? Size(ItemOf(*theAEDesc).content.size()) : 0;
}

OSErr AEReplaceDescData(DescType typeCode, const void* dataPtr, Size dataSize, AEDesc* theAEDesc) {
    if (!theAEDesc) return paramErr;
    return Guarded([&] { return ReplaceData(typeCode, dataPtr, dataSize, theAEDesc); });
}

OSStatus AEGetDescDataRange(const AEDesc* dataDesc, void* buffer, Size offset, Size length) {
    if (!dataDesc) return paramErr;
    return CopyRange(ItemOf(*dataDesc).content, buffer, offset, length);
}
