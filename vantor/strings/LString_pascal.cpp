// Plain Pascal strings: copying, and C strings in place.
#include <algorithm>
#include <cstring>

#include "vantor/strings/LString.h"

UInt8 LString::CStringLength(const char* inCString) {
    return inCString ? UInt8(strnlen(inCString, 255)) : UInt8(0);
}

void LString::CopyPStr(ConstStr255Param inSource, StringPtr outString, SInt16 inSize) {
    if (inSize < 1) return;
    const SInt32 length = std::min<SInt32>(inSource ? inSource[0] : 0, inSize - 1);
    if (length > 0) std::memmove(outString + 1, inSource + 1, size_t(length));
    outString[0] = UInt8(length);
}

void LString::AppendPStr(StringPtr ioString, ConstStr255Param inSource, SInt16 inSize) {
    LStringRef(inSize, ioString).Append(inSource);
}

StringPtr LString::CToPStr(char* ioString) {
    const UInt8 length = CStringLength(ioString);
    const auto string = reinterpret_cast<StringPtr>(ioString);
    if (string == nullptr) return nullptr;
    std::memmove(string + 1, string, length);
    string[0] = length;
    return string;
}

char* LString::PToCStr(StringPtr ioString) {
    if (ioString == nullptr) return nullptr;
    const UInt8 length = ioString[0];
    std::memmove(ioString, ioString + 1, length);
    ioString[length] = 0;
    return reinterpret_cast<char*>(ioString);
}
