// Pascal strings (PStr) and C strings (CStr) in the caller's memory.
//
// Nothing is allocated or thrown; what does not fit is cut off. A Pascal destination holds 256
// bytes unless a size is passed. Where a cut would leave half a character of two bytes in the
// current script, the cut moves one byte to the front. Strings may be null only where it says so.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Comparing, byte by byte. A count of 0 or less is always equal.
VANTOR_EXPORT bool PMemEqual(const void* pFirst, const void* pSecond, SInt32 pCount);
VANTOR_EXPORT bool PStrEqual(ConstStr255Param pFirst, ConstStr255Param pSecond);
// False when either string is shorter than `pCount`.
VANTOR_EXPORT bool PStrNEqual(ConstStr255Param pFirst, ConstStr255Param pSecond, SInt32 pCount);
VANTOR_EXPORT bool PStrContains(ConstStr255Param pString, ConstStr255Param pPart);
VANTOR_EXPORT bool PStrContainsChar(ConstStr255Param pString, unsigned char pCharacter);
VANTOR_EXPORT bool PStrEndsWith(ConstStr255Param pString, ConstStr255Param pEnd);

// Copying; at most `pMax` characters, without the zero of a C string. Source and destination may be
// the same. CStrNCopy writes nothing at all when `pMax` is 0 or less.
VANTOR_EXPORT void PStrCopy(ConstStr255Param pSource, StringPtr pDestination);
VANTOR_EXPORT void PStrNCopy(ConstStr255Param pSource, StringPtr pDestination, SInt32 pMax);
VANTOR_EXPORT void CStrNCopy(const char* pSource, char* pDestination, SInt32 pMax);

// Appending.
VANTOR_EXPORT void PStrCat(StringPtr pString, ConstStr255Param pSource);
VANTOR_EXPORT void PAddChar(StringPtr pString, unsigned char pCharacter);
VANTOR_EXPORT void PAddBlank(StringPtr pString);
VANTOR_EXPORT void PAddNum(StringPtr pString, SInt32 pNumber);
// A string of a 'STR#' resource, counted from 1; nothing when there is none.
VANTOR_EXPORT void PAddIndString(StringPtr pString, SInt16 pResID, SInt16 pIndex);

// Without the spaces in front, but never without the last character.
VANTOR_EXPORT void PStrStripLeadingBlanks(ConstStr255Param pSource, StringPtr pDestination);

// Case, in place. Small letters are made of A to Z only; capitals as the system's script has them.
VANTOR_EXPORT void PLowerText(void* pText, SInt32 pLength);
VANTOR_EXPORT void PLowerString(StringPtr pString);
VANTOR_EXPORT void PStrUppercase(StringPtr pString);

// The bytes before the zero, counted in 16 bits; 0 for null.
VANTOR_EXPORT SInt16 CStrLength(const char* pString);
// In place; null comes back as null.
VANTOR_EXPORT char* PStrToCStr(StringPtr pString);
VANTOR_EXPORT StringPtr CStrToPStr(char* pString);

// A suffix is the last period and what follows, six characters at most. Extracting moves it from
// the string to `pSuffix`, which is empty when there is none.
VANTOR_EXPORT void PStrExtractSuffix(StringPtr pString, StringPtr pSuffix);
VANTOR_EXPORT void PStrRemoveSuffix(StringPtr pString);
// Without regard to case; `pSuffix` begins with the period.
VANTOR_EXPORT bool PStrHasSuffix(ConstStr255Param pString, ConstStr255Param pSuffix);

// Puts texts in the places of ^0 to ^3. A null text leaves nothing there; any other character
// behind a caret stays, with the caret.
VANTOR_EXPORT void PPlugParams(StringPtr pString, ConstStr255Param pParam0,
                               ConstStr255Param pParam1, ConstStr255Param pParam2,
                               ConstStr255Param pParam3);

// The number that a text begins with; 0 when it begins with none.
VANTOR_EXPORT double PStr2Double(ConstStr255Param pString);

// What the byte at `pOffset` (0 is the first) of a text is: 0 a character by itself, -1 and 1 the
// first and second byte of one. Calls the system only when `pScript` is another than last time.
VANTOR_EXPORT SInt16 InterruptSafeCharacterByteType(const void* pText, SInt32 pOffset,
                                                    ScriptCode pScript);
