// Decimal text from and to whole numbers.
#ifndef CARBON_NUMBERFORMATTING_H
#define CARBON_NUMBERFORMATTING_H

#include <Carbon/MacTypes.h>

PLATFORM_DECLARATIONS_BEGIN

// The number in decimal, '-' before a negative one, without separators: at most 11 characters. The
// caller provides a string with room for them.
void NumToString(SInt32 theNum, Str255 theString);

// The number that a text stands for. Nothing is checked: after one optional '-' or '+' the low four
// bits of every character count as a digit, ten and more included, and the sum wraps at 32 bits. An
// empty text gives 0.
void StringToNum(ConstStr255Param theString, SInt32* theNum);

PLATFORM_DECLARATIONS_END

#endif
