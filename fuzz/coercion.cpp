// Any data of any type into any type: four bytes from, four bytes to, then a flattened descriptor
// or bare data.
#include <Carbon/Carbon.h>

#include <cstdlib>
#include <vector>

#include "apple_event_manager/internal.h"

namespace {

constexpr size_t kHead = 8;

DescType ReadType(const UInt8* inBytes) {
    return DescType(inBytes[0]) << 24 | DescType(inBytes[1]) << 16 | DescType(inBytes[2]) << 8 |
           inBytes[3];
}

void Check(OSErr inResult, AEDesc& ioDesc) {
    const bool isNull = ioDesc.descriptorType == typeNull && !ioDesc.dataHandle;
    if (inResult != noErr && !isNull) std::abort();
    if (inResult == noErr) {
        const auto bytes = carbon::EventBytes(ioDesc);
        AEDesc copy = {typeNull, nullptr};
        if (carbon::DescFromBytes(carbon::Buffer(bytes), &copy) != noErr) std::abort();
        AEDisposeDesc(&copy);
    }
    AEDisposeDesc(&ioDesc);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inData, size_t inSize) {
    if (inSize < kHead) return 0;
    const DescType from = ReadType(inData), to = ReadType(inData + 4);
    AEDesc result = {typeNull, nullptr}, source = {typeNull, nullptr};
    if (carbon::DescFromBytes(carbon::Buffer({inData + kHead, inData + inSize}), &source) ==
        noErr) {
        Check(AECoerceDesc(&source, to, &result), result);
        AEDisposeDesc(&source);
    } else {
        Check(AECoercePtr(from, inData + kHead, Size(inSize - kHead), to, &result), result);
    }
    return 0;
}
