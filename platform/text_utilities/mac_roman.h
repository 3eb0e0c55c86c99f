// MacRoman characters as Unicode and back: one table, no converter to open.
#pragma once

#include <Carbon/MacTypes.h>

#include <optional>
#include <string>
#include <string_view>

namespace carbon {

// Every byte is a character; 0xF0 is U+F8FF in the private use area.
char16_t UnicodeFromMacRoman(UInt8 inCharacter);

// A whole text, one unit a byte.
void DecodeMacRoman(std::string_view inText, char16_t* outUnits);

// The one byte that stands for a character, if there is one. The ohm sign (U+2126) counts as the
// capital omega that the table holds.
std::optional<UInt8> MacRomanFromUnicode(char16_t inUnit);

std::string Utf8FromMacRoman(std::string_view inText);

// Composes first, so that a letter with a separate accent fits. Nothing when the text is not well
// formed or has a character that MacRoman lacks.
std::optional<std::string> MacRomanFromUtf8(std::string_view inText);

}  // namespace carbon
