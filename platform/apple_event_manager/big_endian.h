// Numbers to and from the big-endian bytes of descriptors.
#pragma once

#include <Carbon/Endian.h>

#include <concepts>
#include <cstring>

namespace carbon {

template <std::unsigned_integral T>
T ByteSwappedIfLittle(T inValue) {
    if constexpr (sizeof(T) == 8)
        return EndianU64_BtoN(inValue);
    else if constexpr (sizeof(T) == 4)
        return EndianU32_BtoN(inValue);
    else if constexpr (sizeof(T) == 2)
        return EndianU16_BtoN(inValue);
    else
        return inValue;
}

// The number that the bytes at `inBytes`, aligned or not, stand for.
template <std::integral T>
T ReadBigEndian(const UInt8* inBytes) {
    std::make_unsigned_t<T> value;
    std::memcpy(&value, inBytes, sizeof value);
    return static_cast<T>(ByteSwappedIfLittle(value));
}

template <std::integral T>
void WriteBigEndian(UInt8* outBytes, T inValue) {
    const auto value = ByteSwappedIfLittle(static_cast<std::make_unsigned_t<T>>(inValue));
    std::memcpy(outBytes, &value, sizeof value);
}

}  // namespace carbon
