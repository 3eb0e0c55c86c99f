// Sizes, times and numbers as people read them.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

namespace cli {

// 1234567 bytes as "1.2 MB": powers of 1000, as discs are sold.
std::string Bytes(SInt64 inBytes);

// 75 seconds as "1:15", an hour and more as "1:02:03".
std::string Clock(SInt64 inSeconds);

// 20113 as "20,113".
std::string Grouped(SInt64 inNumber);

// A Pascal string in MacRoman as UTF-8.
std::string MacRomanText(ConstStringPtr inText);

// A four-character code as its characters; bytes outside printable ASCII as '.'.
std::string Code(OSType inCode);

}  // namespace cli
