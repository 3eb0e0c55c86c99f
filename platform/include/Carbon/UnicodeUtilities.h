// Unicode Utilities: the order of Unicode texts for a reader.
#ifndef CARBON_UNICODEUTILITIES_H
#define CARBON_UNICODEUTILITIES_H

#include <Carbon/MacTypes.h>

// What makes no difference, or makes one; the values add up.
typedef UInt32 UCCollateOptions;
enum {
    kUCCollateComposeInsensitiveMask = 1 << 1,  // one character or letter and mark
    kUCCollateWidthInsensitiveMask = 1 << 2,    // half and full width
    kUCCollateCaseInsensitiveMask = 1 << 3,
    kUCCollateDiacritInsensitiveMask = 1 << 4,
    kUCCollatePunctuationSignificantMask = 1 << 15,  // else it counts only between equal texts
    kUCCollateDigitsOverrideMask = 1 << 16,          // digits are handled as the next one says
    kUCCollateDigitsAsNumberMask = 1 << 17,          // runs of digits by their value
    kUCCollateStandardOptions = kUCCollateComposeInsensitiveMask | kUCCollateWidthInsensitiveMask
};

PLATFORM_DECLARATIONS_BEGIN

// Compares two texts of UTF-16 units in the order of the user's locale. *equivalent: whether they
// differ only in what the options call no difference. *order: below 0, 0 or above 0 as the first
// comes before, with or after the second, by all differences there are; -2 and 2 for one that
// counts under the options, -1 and 1 for one that does not. Either may be NULL. Returns paramErr
// when both are, for a text that is NULL with a length, and for texts longer than 2^31 - 1 units.
// Runs of up to 254 digits are compared by value.
OSStatus UCCompareTextDefault(UCCollateOptions options, const UniChar* text1Ptr,
                              UniCharCount text1Length, const UniChar* text2Ptr,
                              UniCharCount text2Length, Boolean* equivalent, SInt32* order);

PLATFORM_DECLARATIONS_END

#endif
