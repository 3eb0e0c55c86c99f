// The bytes of descriptors, for comparison.
#pragma once

#include <Carbon/Carbon.h>

#include <vector>

inline std::vector<UInt8> BytesOf(const AEDesc* inDesc) {
    std::vector<UInt8> bytes(static_cast<std::size_t>(AEGetDescDataSize(inDesc)));
    if (AEGetDescData(inDesc, bytes.data(), static_cast<Size>(bytes.size())) != noErr) return {};
    return bytes;
}
