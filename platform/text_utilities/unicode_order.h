// The order of Unicode texts: ICU's collation, and a short way for texts of plain ASCII.
#pragma once

#include <Carbon/UnicodeUtilities.h>
#include <unicode/ucol.h>

#include <optional>
#include <string_view>

namespace carbon {

// What a comparison found: whether the texts are equivalent under the options, and their order as
// UCCompareTextDefault gives it.
struct UnicodeOrder {
    bool equivalent = true;
    SInt32 order = 0;
};

// The collator of the user's locale for a set of options, opened once; at the deepest strength when
// inIdentical is true. Null when ICU has none.
const UCollator* CollatorFor(UCCollateOptions inOptions, bool inIdentical);

// The order of two texts of printable ASCII; nothing when one is not, when the options ask for
// something else than names in a list, or when the user's language orders ASCII letters by more
// than one at a time.
std::optional<UnicodeOrder> CompareAscii(UCCollateOptions inOptions, std::u16string_view inOne,
                                         std::u16string_view inOther);

}  // namespace carbon
