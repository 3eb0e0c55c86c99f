// Suffixes of names, and parameters in messages.
#include <algorithm>
#include <cstring>

#include "vantor/strings/PStr.h"

namespace {

constexpr SInt32 kMostCharacters = 255;
constexpr SInt32 kLongestSuffix = 6;  // with its period

// The last period from a position down to the sixth from the end; 0 for none.
SInt32 FindPeriod(ConstStr255Param inString, SInt32 inFrom) {
    const SInt32 last = std::max<SInt32>(inString[0] - kLongestSuffix + 1, 1);
    for (SInt32 position = inFrom; position >= last; --position)
        if (inString[position] == '.') return position;
    return 0;
}

void CopyFrom(ConstStr255Param inString, SInt32 inPosition, StringPtr outPart) {
    outPart[0] = UInt8(inString[0] - inPosition + 1);
    std::memcpy(outPart + 1, inString + inPosition, outPart[0]);
}

bool NamesParam(unsigned char inCharacter) {
    return inCharacter >= '0' && inCharacter <= '3';
}

}  // namespace

void PStrExtractSuffix(StringPtr pString, StringPtr pSuffix) {
    pSuffix[0] = 0;
    const SInt32 period = FindPeriod(pString, pString[0]);
    if (period == 0) return;
    CopyFrom(pString, period, pSuffix);
    pString[0] = UInt8(period - 1);
}

void PStrRemoveSuffix(StringPtr pString) {
    // Kept: the byte behind the text is looked at too, and a period there counts: it hides a suffix
    // from being removed. A full string has no such byte.
    const SInt32 period = FindPeriod(pString, std::min(pString[0] + 1, kMostCharacters));
    if (period > 0) pString[0] = UInt8(period - 1);
}

bool PStrHasSuffix(ConstStr255Param pString, ConstStr255Param pSuffix) {
    const SInt32 period = FindPeriod(pString, pString[0]);
    if (period == 0) return false;
    Str255 own, wanted;
    CopyFrom(pString, period, own);
    PStrCopy(pSuffix, wanted);
    PStrUppercase(own);
    PStrUppercase(wanted);
    return PStrEqual(own, wanted);
}

void PPlugParams(StringPtr pString, ConstStr255Param pParam0, ConstStr255Param pParam1,
                 ConstStr255Param pParam2, ConstStr255Param pParam3) {
    const ConstStr255Param params[] = {pParam0, pParam1, pParam2, pParam3};
    Str255 result;
    result[0] = 0;
    for (SInt32 i = 1; i <= pString[0]; ++i) {
        const bool isCaret = pString[i] == '^' && i < pString[0];
        if (isCaret && NamesParam(pString[i + 1])) {
            const ConstStr255Param param = params[pString[++i] - '0'];
            if (param != nullptr) PStrCat(result, param);
            continue;
        }
        PAddChar(result, pString[i]);
        if (isCaret) PAddChar(result, pString[++i]);
    }
    PStrCopy(result, pString);
}
