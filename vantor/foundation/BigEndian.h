// The one pair of helpers through which values enter and leave descriptors. Descriptor data is
// big-endian on every machine; variables are native.
#pragma once

#include <Carbon/Carbon.h>

#include <bit>
#include <type_traits>

// The bytes of `inValue` in the opposite order on little-endian machines. Its own inverse, so both
// directions below are spelled with it.
template <typename T>
constexpr T SwapUnlessBigEndian(T inValue) {
    static_assert(std::is_integral_v<T>);
    if constexpr (std::endian::native == std::endian::big || sizeof(T) == 1) {
        return inValue;
    } else if constexpr (sizeof(T) == 2) {
        return static_cast<T>(__builtin_bswap16(static_cast<UInt16>(inValue)));
    } else if constexpr (sizeof(T) == 4) {
        return static_cast<T>(__builtin_bswap32(static_cast<UInt32>(inValue)));
    } else {
        static_assert(sizeof(T) == 8);
        return static_cast<T>(__builtin_bswap64(static_cast<UInt64>(inValue)));
    }
}

constexpr ProcessSerialNumber SwapUnlessBigEndian(ProcessSerialNumber inPSN) {
    return {SwapUnlessBigEndian(inPSN.highLongOfPSN), SwapUnlessBigEndian(inPSN.lowLongOfPSN)};
}

inline FSSpec SwapUnlessBigEndian(const FSSpec& inSpec) {
    FSSpec spec = inSpec;
    spec.vRefNum = SwapUnlessBigEndian(inSpec.vRefNum);
    spec.parID = SwapUnlessBigEndian(inSpec.parID);
    return spec;
}

// A variable's value as it stands in a descriptor.
template <typename T>
T BigEndianFromNative(const T& inValue) {
    return SwapUnlessBigEndian(inValue);
}

// A value read from a descriptor as a variable holds it.
template <typename T>
T NativeFromBigEndian(const T& inValue) {
    return SwapUnlessBigEndian(inValue);
}
