// How MacRoman letters fold and sort: tables of 256 entries, one a character.
#pragma once

#include <Carbon/MacTypes.h>

#include <array>

namespace carbon {

using ByteTable = std::array<UInt8, 256>;

// Folding in file names: to capitals unless case counts, without marks unless these count.
const ByteTable& NameFolding(bool inCaseCounts, bool inMarksCount);

// The position of each (folded) character in sorted file names. The hard space shares the space's.
extern const ByteTable kNameOrder;

// Order of texts for a reader: by all primaries first, then by all secondaries.
extern const ByteTable kTextPrimaries;
extern const ByteTable kTextSecondaries;

// Changing texts.
extern const ByteTable kTextCapitals;
extern const ByteTable kTextSmallLetters;
extern const ByteTable kTextUnmarked;
extern const ByteTable kTextUnmarkedCapitals;

}  // namespace carbon
