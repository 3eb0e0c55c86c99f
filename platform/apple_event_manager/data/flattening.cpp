// Whole descriptors as one block of bytes, and back.
#include <cstring>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/data/access.h"

namespace carbon {

using namespace wire;

namespace {

OSStatus Flatten(Bytes inForm, Ptr outBuffer, Size inSize, Size* outActual) {
    const Size size = Size(inForm.size());
    if (outActual) *outActual = size;
    if (!outBuffer) return noErr;
    if (inSize < size) return errAEBufferTooSmall;
    std::memcpy(outBuffer, inForm.data(), inForm.size());
    return noErr;
}

// For a form that passed the check.
void Adopt(Buffer&& inForm, int inDepth, AEDesc* outDesc) {
    const Item item = ReadItem(inForm, kFirstItem);
    const bool isNull = item.type == typeNull && !item.IsContainer() && item.content.empty();
    if (isNull) return;
    *outDesc = {item.type, HandleOf(Storage::OfForm(std::move(inForm), inDepth))};
}

// The caller vouches for as many bytes as the header names, so that is all that may be read first.
OSErr Unflatten(const UInt8* inBytes, AEDesc* outDesc) {
    if (!inBytes || ReadBigEndian<UInt32>(inBytes) != kMagic) return paramErr;
    const auto size = ReadBigEndian<UInt32>(inBytes + kFirstItem + kSizeAt);
    if (size > kMaximumSize - kContent) return paramErr;
    const Bytes form(inBytes, kContent + Padded(size));
    int depth = 0;
    if (!CheckForm(form, &depth)) return paramErr;
    Adopt(Buffer(form), depth, outDesc);
    return noErr;
}

}  // namespace

std::span<const UInt8> EventBytes(const AEDesc& inDesc) {
    static constexpr UInt8 kNullForm[kContent] = {0x41, 0x45, 0x64, 0x01, 'n', 'u', 'l', 'l'};
    Storage* storage = StorageOf(inDesc);
    return storage ? storage->Form(inDesc.descriptorType) : Bytes(kNullForm);
}

OSStatus DescFromBytes(Buffer&& inBytes, AEDesc* outDesc) {
    return Making(outDesc, [&] {
        int depth = 0;
        if (!CheckForm(inBytes, &depth)) return OSErr(errAECorruptData);
        Adopt(std::move(inBytes), depth, outDesc);
        return OSErr(noErr);
    });
}

}  // namespace carbon

using namespace carbon;

Size AESizeOfFlattenedDesc(const AEDesc* theAEDesc) {
    return theAEDesc ? Size(wire::kFirstItem + ItemOf(*theAEDesc).FormSize()) : 0;
}

OSStatus AEFlattenDesc(const AEDesc* theAEDesc, Ptr buffer, Size bufferSize, Size* actualSize) {
    if (!theAEDesc) return paramErr;
    return Guarded(
        [&] { return OSErr(Flatten(EventBytes(*theAEDesc), buffer, bufferSize, actualSize)); });
}

OSStatus AEUnflattenDesc(const void* buffer, AEDesc* result) {
    return Making(result, [&] { return Unflatten(static_cast<const UInt8*>(buffer), result); });
}
