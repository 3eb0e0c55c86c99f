// How a name on disk and a name in a file spec stand for each other.
#pragma once

#include <Carbon/MacTypes.h>

#include <optional>
#include <string>
#include <string_view>

namespace carbon {

inline constexpr size_t kLongestSpecName = 63;
inline constexpr size_t kLongestVolumeName = 27;

// The MacRoman spelling of a name on disk, if it has one that fits a file spec.
std::optional<std::string> SpecNameOf(std::string_view inDiskName);

// The bytes on disk that a file spec's name means when it is taken at its word.
std::string DiskNameOf(std::string_view inSpecName);

// The spelling of a name that has no other: its beginning ('?' for what MacRoman lacks), '#', the
// number in hexadecimal and an extension of at most five characters, its dot included.
std::string ShortenedName(std::string_view inDiskName, SInt32 inId,
                          size_t inRoom = kLongestSpecName);

// The number in a name of that form; the name need not have come from ShortenedName.
std::optional<SInt32> IdInName(std::string_view inSpecName);

// Small letters for capitals, accents kept: equal for names that differ in case only. MacRoman.
std::string Folded(std::string_view inSpecName);

// A name on disk for comparing with others: composed, without regard to case. UTF-8.
std::string FoldedDiskName(std::string_view inDiskName);

// ':' and '/' each for the other.
std::string WithSeparatorsExchanged(std::string inName);

// A companion that holds another file's Finder information and resources: "._name".
bool IsCompanionName(std::string_view inDiskName);

void SetPascal(std::string_view inText, size_t inRoom, unsigned char* outString);
std::string_view TextOfPascal(const unsigned char* inString);

}  // namespace carbon
