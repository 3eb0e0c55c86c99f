// Takes the values of `@` from the caller's arguments.
#include "apple_event_manager/text/build_arguments.h"

#include <Carbon/AERegistry.h>
#include <Carbon/MacMemory.h>

#include <bit>
#include <cstring>

#include "apple_event_manager/big_endian.h"

namespace carbon {
namespace {

OSErr MakeLeaf(DescType inType, const void* inData, Size inSize, AEDesc* outDesc) {
    const auto item = ItemOf(inType, inData, inSize);
    if (!item) return paramErr;
    MakeDesc(*item, outDesc);
    return noErr;
}

template <typename Number>
OSErr MakeNumber(DescType inType, Number inValue, AEDesc* outDesc) {
    UInt8 bytes[sizeof inValue];
    WriteBigEndian(bytes, inValue);
    return MakeLeaf(inType, bytes, sizeof bytes, outDesc);
}

}  // namespace

OSErr BuildArguments::TakeDesc(AEDesc* outDesc) {
    const AEDesc* desc = va_arg(mArguments, const AEDesc*);
    if (!desc) return paramErr;
    MakeDesc(ItemOf(*desc), outDesc);
    return noErr;
}

OSErr BuildArguments::TakeText(DescType inType, AEDesc* outDesc) {
    const char* text = va_arg(mArguments, const char*);
    return text ? MakeLeaf(inType, text, static_cast<Size>(std::strlen(text)), outDesc)
                : OSErr{paramErr};
}

OSErr BuildArguments::TakeBytes(DescType inType, AEDesc* outDesc) {
    const Size size = va_arg(mArguments, Size);
    const void* data = va_arg(mArguments, const void*);
    return MakeLeaf(inType, data, size, outDesc);
}

OSErr BuildArguments::TakeTyped(DescType inType, AEDesc* outDesc) {
    switch (inType) {
        case typeBoolean:
            return MakeNumber(inType, UInt8{va_arg(mArguments, int) != 0}, outDesc);
        case typeSInt16:
            return MakeNumber(inType, static_cast<SInt16>(va_arg(mArguments, int)), outDesc);
        case typeSInt32:
        case typeUInt32:
        case typeType:
        case typeEnumerated:
        case typeKeyword:
        case typeProperty:
        case typeApplSignature:
            return MakeNumber(inType, va_arg(mArguments, UInt32), outDesc);
        case typeSInt64:
            return MakeNumber(inType, va_arg(mArguments, SInt64), outDesc);
        case typeIEEE32BitFloatingPoint:
            return MakeNumber(inType,
                              std::bit_cast<UInt32>(static_cast<float>(va_arg(mArguments, double))),
                              outDesc);
        case typeIEEE64BitFloatingPoint:
            return MakeNumber(inType, std::bit_cast<UInt64>(va_arg(mArguments, double)), outDesc);
        case typeChar:
            return TakeText(inType, outDesc);
        default:
            return TakeBytes(inType, outDesc);
    }
}

OSErr BuildArguments::TakeHandle(DescType inType, AEDesc* outDesc) {
    const Handle handle = va_arg(mArguments, Handle);
    if (!handle || !*handle) return paramErr;
    return MakeLeaf(inType, *handle, GetHandleSize(handle), outDesc);
}

}  // namespace carbon
