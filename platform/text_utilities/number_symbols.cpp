// Owns the system's number parts, and reading the symbols of any parts table.
#include "text_utilities/number_symbols.h"

#include <Carbon/MacMemory.h>

#include <cstring>
#include <mutex>
#include <string_view>

#include "posix/across_forks.h"
#include "text_utilities/scripts.h"

namespace carbon {
namespace {

constexpr int kLastToken = tokDecPoint;  // of those that mean something
constexpr int kFirstUnquoted = tokDecPoint + 1;

WideChar Wide(char inCharacter) {
    WideChar wide;
    wide.b = SInt16(UInt8(inCharacter));
    return wide;
}

WideCharArr WideText(std::string_view inText) {
    WideCharArr array = {};
    array.size = SInt16(inText.size());
    for (size_t i = 0; i < inText.size(); ++i) array.data[i] = Wide(inText[i]);
    return array;
}

NumberParts UnitedStatesParts() {
    NumberParts parts = {};
    parts.version = curNumberPartsVersion;
    // Token 11 is reserved; behind token 14 the characters that need no quotes.
    constexpr std::string_view kSymbols("''^\xCA#0%+-,\0;\\.() $:/*", 21);
    for (size_t i = 0; i < kSymbols.size(); ++i) parts.data[i] = Wide(kSymbols[i]);
    parts.pePlus = WideText("E+");
    parts.peMinus = WideText("E-");
    parts.peMinusPlus = WideText("E");
    parts.altNumTable = WideText("0123456789");
    return parts;
}

bool MayBeTheSame(int inFirst, int inSecond) {
    return (inFirst == tokLeftQuote && inSecond == tokRightQuote) ||
           (inFirst == tokLeadPlacer && inSecond == tokLeader);
}

SymbolText TextOf(const WideCharArr& inArray) {
    SymbolText text;
    for (const WideChar& character : inArray.data) {
        if (character.b == 0) break;
        text.Add(character);
    }
    return text;
}

constinit std::mutex sSystemTableLock;
const HeldAcrossForks sHeld(sSystemTableLock);

// Made once, and again while memory is short; never disposed.
Handle SystemTable() {
    static Handle table = nullptr;
    const std::lock_guard lock(sSystemTableLock);
    if (!table) table = NewHandle(sizeof(NumberParts));
    if (table) std::memcpy(*table, &SystemNumberParts(), sizeof(NumberParts));
    return table;
}

}  // namespace

void SymbolText::Add(WideChar inCharacter) {
    const auto code = UInt16(inCharacter.b);
    if (code > 0xFF) bytes[length++] = UInt8(code >> 8);
    if (code != 0) bytes[length++] = UInt8(code);
}

bool NumberSymbols::IsSound() const {
    if (!mParts) return false;
    for (int i = 1; i <= kLastToken; ++i)
        for (int j = i + 1; j <= kLastToken; ++j) {
            if (i == tokReserved || j == tokReserved || MayBeTheSame(i, j)) continue;
            const SInt16 symbol = mParts->data[i - 1].b;
            if (symbol != 0 && symbol == mParts->data[j - 1].b) return false;
        }
    return true;
}

SymbolText NumberSymbols::Of(int inToken) const {
    if (inToken == tokEPlus) return TextOf(mParts->pePlus);
    if (inToken == tokEMinus) return TextOf(mParts->peMinus);
    return Unquoted(inToken);
}

SymbolText NumberSymbols::Unquoted(int inToken) const {
    SymbolText text;
    text.Add(mParts->data[inToken - 1]);
    return text;
}

SymbolText NumberSymbols::PlusInMinusFormat() const {
    return TextOf(mParts->peMinusPlus);
}

bool NumberSymbols::StandsForItself(UInt8 inCharacter) const {
    if (inCharacter == 0) return false;
    for (int token = 1; token <= kLastToken; ++token)
        if (mParts->data[token - 1].b == inCharacter) return token == tokLeader;
    for (int token = kFirstUnquoted; token <= tokMaxSymbols; ++token)
        if (mParts->data[token - 1].b == inCharacter) return true;
    return false;
}

int NumberSymbols::AlternateDigit(UInt8 inCharacter) const {
    for (int digit = 0; digit < 10 && mParts->altNumTable.data[digit].b != 0; ++digit)
        if (mParts->altNumTable.data[digit].b == inCharacter) return digit;
    return -1;
}

const NumberParts& SystemNumberParts() {
    static const NumberParts parts = UnitedStatesParts();
    return parts;
}

}  // namespace carbon

using namespace carbon;

void GetIntlResourceTable(ScriptCode script, SInt16 tableCode, Handle* itlHandle, SInt32* offset,
                          SInt32* length) {
    const bool isThere = IsEnabled(script) && tableCode == smNumberPartsTable;
    *itlHandle = isThere ? SystemTable() : nullptr;
    *offset = 0;
    *length = *itlHandle ? SInt32(sizeof(NumberParts)) : 0;
}
