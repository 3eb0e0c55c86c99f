// Property lists as objects: XML and binary ones, and the old form of .strings files.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>
#include <string_view>

namespace carbon {

// Larger or deeper lists are not read.
constexpr size_t kLargestPropertyList = 4 << 20;
constexpr int kDeepestPropertyList = 64;
constexpr size_t kMostPropertyListNodes = 200000;
constexpr size_t kMostPropertyListBytes = 16
                                          << 20;  // of texts and data, as often as they are named

// The dictionary at the top of a list, owned by the caller; null when the bytes are not a list
// whose top is one.
CFDictionaryRef DictionaryFromPropertyList(std::string_view inBytes);

// The pairs of a .strings file: a property list, or "key" = "value"; pairs in UTF-8 or UTF-16.
// Owned by the caller; null when it is neither.
CFDictionaryRef DictionaryFromStringsFile(std::string_view inBytes);

// Whether a list is shallow and small enough to be handed to the reader, its real size included: a
// binary list may name one part many times.
bool IsHarmlessXML(std::string_view inBytes);
bool IsHarmlessBinary(std::string_view inBytes);

// All of a file up to kLargestPropertyList bytes; nothing when it is larger or cannot be read.
std::optional<std::string> ReadWholeFile(const std::string& inPath);

}  // namespace carbon
