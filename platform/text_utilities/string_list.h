// Lists of strings as resources hold them.
#pragma once

#include <Carbon/MacTypes.h>

#include <span>

namespace carbon {

// A string, counted from 1, of a list: its number of strings, big-endian in two bytes, then Pascal
// strings one behind the other. The empty string when the list does not have it, whatever it says.
void StringInList(std::span<const UInt8> inList, SInt16 inIndex, Str255 outString);

}  // namespace carbon
