// Comparing MacRoman text: as the file system does, by fixed tables, and as a reader would.
#ifndef CARBON_STRINGCOMPARE_H
#define CARBON_STRINGCOMPARE_H

#include <Carbon/MacTypes.h>

PLATFORM_DECLARATIONS_BEGIN

// Whether two names are equal in the file system's eyes. Letters fold to capitals unless
// `caseSensitive`, and lose their marks unless `diacSensitive`. The hard space always equals the
// space.
Boolean EqualString(ConstStr255Param str1, ConstStr255Param str2, Boolean caseSensitive,
                    Boolean diacSensitive);

// How two names sort in the file system: -1, 0 or 1 as the first comes before, with or after the
// second. Folding as above.
SInt16 RelString(ConstStr255Param str1, ConstStr255Param str2, Boolean caseSensitive,
                 Boolean diacSensitive);

// How two texts sort for a reader: -1, 0 or 1. Case and marks decide only between texts that are
// alike without them. Lengths are bytes, below 0 counts as 0. `itl2Handle` is a sorting table of
// another script and may be null; texts are sorted by the Roman one, whatever it is.
SInt16 CompareText(const void* aPtr, const void* bPtr, SInt16 aLen, SInt16 bLen, Handle itl2Handle);
SInt16 CompareString(ConstStr255Param aStr, ConstStr255Param bStr, Handle itl2Handle);

// 0 when two texts are alike without case and marks, else 1. Parameters as above.
SInt16 IdenticalText(const void* aPtr, const void* bPtr, SInt16 aLen, SInt16 bLen,
                     Handle itl2Handle);
SInt16 IdenticalString(ConstStr255Param aStr, ConstStr255Param bStr, Handle itl2Handle);

PLATFORM_DECLARATIONS_END

#endif
