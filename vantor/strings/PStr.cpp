// Comparing, copying, appending, case.
#include "vantor/strings/PStr.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

constexpr SInt32 kMostCharacters = 255;

// For which script InterruptSafeCharacterByteType has a table; no script has this number.
constexpr ScriptCode kNoScript = -32768;
ScriptCode sTableScript = kNoScript;
CharByteTable sTable;

// How many of at most `inMax` bytes to keep. The byte behind a cut is the second of a pair just
// when the one before it is the first; only that one is sure to be there.
SInt32 KeptLength(const void* inText, SInt32 inLength, SInt32 inMax) {
    if (inLength < inMax) return inLength;
    const SInt16 last = InterruptSafeCharacterByteType(inText, inMax - 1, smCurrentScript);
    return last == smFirstByte ? inMax - 1 : inMax;
}

}  // namespace

bool PMemEqual(const void* pFirst, const void* pSecond, SInt32 pCount) {
    return pCount <= 0 || std::memcmp(pFirst, pSecond, size_t(pCount)) == 0;
}

bool PStrEqual(ConstStr255Param pFirst, ConstStr255Param pSecond) {
    return PMemEqual(pFirst, pSecond, pFirst[0] == pSecond[0] ? pFirst[0] + 1 : 1);
}

bool PStrNEqual(ConstStr255Param pFirst, ConstStr255Param pSecond, SInt32 pCount) {
    if (pFirst[0] < pCount || pSecond[0] < pCount) return false;
    return PMemEqual(pFirst + 1, pSecond + 1, pCount);
}

bool PStrContains(ConstStr255Param pString, ConstStr255Param pPart) {
    return memmem(pString + 1, pString[0], pPart + 1, pPart[0]) != nullptr;
}

bool PStrContainsChar(ConstStr255Param pString, unsigned char pCharacter) {
    return std::memchr(pString + 1, pCharacter, pString[0]) != nullptr;
}

bool PStrEndsWith(ConstStr255Param pString, ConstStr255Param pEnd) {
    const SInt32 before = pString[0] - pEnd[0];
    return before >= 0 && PMemEqual(pString + 1 + before, pEnd + 1, pEnd[0]);
}

void PStrCopy(ConstStr255Param pSource, StringPtr pDestination) {
    std::memmove(pDestination, pSource, pSource[0] + size_t{1});
}

void PStrNCopy(ConstStr255Param pSource, StringPtr pDestination, SInt32 pMax) {
    const SInt32 length = KeptLength(pSource + 1, pSource[0], std::max(pMax, 0));
    std::memmove(pDestination + 1, pSource + 1, size_t(length));
    pDestination[0] = UInt8(length);
}

void CStrNCopy(const char* pSource, char* pDestination, SInt32 pMax) {
    if (pMax <= 0) return;
    const SInt32 length = pSource ? SInt32(strnlen(pSource, size_t(pMax))) : 0;
    const SInt32 kept = KeptLength(pSource, length, pMax);
    if (kept > 0) std::memmove(pDestination, pSource, size_t(kept));
    pDestination[kept] = '\0';
}

void PStrCat(StringPtr pString, ConstStr255Param pSource) {
    const SInt32 length = std::min<SInt32>(pSource[0], kMostCharacters - pString[0]);
    std::memmove(pString + 1 + pString[0], pSource + 1, size_t(length));
    pString[0] = UInt8(pString[0] + length);
}

void PAddChar(StringPtr pString, unsigned char pCharacter) {
    if (pString[0] == kMostCharacters) return;
    pString[++pString[0]] = pCharacter;
}

void PAddBlank(StringPtr pString) {
    PAddChar(pString, ' ');
}

void PAddNum(StringPtr pString, SInt32 pNumber) {
    Str255 text;
    NumToString(pNumber, text);
    PStrCat(pString, text);
}

void PAddIndString(StringPtr pString, SInt16 pResID, SInt16 pIndex) {
    Str255 text;
    GetIndString(text, pResID, pIndex);
    PStrCat(pString, text);
}

void PStrStripLeadingBlanks(ConstStr255Param pSource, StringPtr pDestination) {
    SInt32 blanks = 0;
    while (blanks < pSource[0] - 1 && pSource[blanks + 1] == ' ') ++blanks;
    const SInt32 length = pSource[0] - blanks;
    std::memmove(pDestination + 1, pSource + 1 + blanks, size_t(length));
    pDestination[0] = UInt8(length);
}

void PLowerText(void* pText, SInt32 pLength) {
    const auto text = static_cast<unsigned char*>(pText);
    for (SInt32 i = 0; i < pLength; ++i)
        if (text[i] >= 'A' && text[i] <= 'Z') text[i] = UInt8(text[i] + ('a' - 'A'));
}

void PLowerString(StringPtr pString) {
    PLowerText(pString + 1, pString[0]);
}

void PStrUppercase(StringPtr pString) {
    UppercaseText(reinterpret_cast<Ptr>(pString + 1), pString[0], smSystemScript);
}

// Kept: the count has 16 bits and wraps to negative numbers for longer strings.
SInt16 CStrLength(const char* pString) {
    return pString ? SInt16(UInt16(std::strlen(pString))) : SInt16(0);
}

char* PStrToCStr(StringPtr pString) {
    if (pString == nullptr) return nullptr;
    const UInt8 length = pString[0];
    std::memmove(pString, pString + 1, length);
    pString[length] = '\0';
    return reinterpret_cast<char*>(pString);
}

StringPtr CStrToPStr(char* pString) {
    if (pString == nullptr) return nullptr;
    const size_t length = strnlen(pString, kMostCharacters);
    std::memmove(pString + 1, pString, length);
    const auto string = reinterpret_cast<StringPtr>(pString);
    string[0] = UInt8(length);
    return string;
}

double PStr2Double(ConstStr255Param pString) {
    char text[256];
    std::memcpy(text, pString + 1, pString[0]);
    text[pString[0]] = '\0';
    double number = 0;
    return std::sscanf(text, "%lf", &number) == 1 ? number : 0;
}

SInt16 InterruptSafeCharacterByteType(const void* pText, SInt32 pOffset, ScriptCode pScript) {
    // Kept: the number asked for is compared, so a table for "the current script" stays in use
    // after another script has become current.
    if (pScript != sTableScript) {
        FillParseTable(sTable, pScript);
        sTableScript = pScript;
    }
    const auto text = static_cast<const unsigned char*>(pText);
    SInt16 type = smSingleByte;
    for (SInt32 i = 0; i <= pOffset; ++i) {
        if (type == smFirstByte)
            type = smLastByte;
        else
            type = sTable[text[i]] ? smFirstByte : smSingleByte;
    }
    return type;
}
