// Owns the tables of case, marks and order for MacRoman text.
#include "text_utilities/folding.h"

#include <string_view>

namespace carbon {
namespace {

struct Row {
    UInt8 code;
    UInt8 capital;          // in names, where marks count
    UInt8 unmarked;         // in names and texts
    UInt8 unmarkedCapital;  // in names
    UInt8 primary;          // in sorted texts
    UInt8 secondary;
    UInt8 textCapital;
};

// Kept: in names the grave accent folds to a small a, and letters whose capitals lie above D8 keep
// their case.
constexpr Row kRows[] = {
    {0x60, 'a', '`', 'a', '`', 0x00, '`'},       // `
    {0x80, 0x80, 'A', 'A', 'A', 0x02, 0x80},     // Ä
    {0x81, 0x81, 'A', 'A', 'A', 0x04, 0x81},     // Å
    {0x82, 0x82, 'C', 'C', 'C', 0x01, 0x82},     // Ç
    {0x83, 0x83, 'E', 'E', 'E', 0x01, 0x83},     // É
    {0x84, 0x84, 'N', 'N', 'N', 0x01, 0x84},     // Ñ
    {0x85, 0x85, 'O', 'O', 'O', 0x01, 0x85},     // Ö
    {0x86, 0x86, 'U', 'U', 'U', 0x01, 0x86},     // Ü
    {0x87, 0x87, 'a', 'A', 'A', 0x81, 0xE7},     // á
    {0x88, 0xCB, 'a', 'A', 'A', 0x82, 0xCB},     // à
    {0x89, 0x89, 'a', 'A', 'A', 0x83, 0xE5},     // â
    {0x8A, 0x80, 'a', 'A', 'A', 0x84, 0x80},     // ä
    {0x8B, 0xCC, 'a', 'A', 'A', 0x85, 0xCC},     // ã
    {0x8C, 0x81, 'a', 'A', 'A', 0x86, 0x81},     // å
    {0x8D, 0x82, 'c', 'C', 'C', 0x81, 0x82},     // ç
    {0x8E, 0x83, 'e', 'E', 'E', 0x81, 0x83},     // é
    {0x8F, 0x8F, 'e', 'E', 'E', 0x82, 0xE9},     // è
    {0x90, 0x90, 'e', 'E', 'E', 0x83, 0xE6},     // ê
    {0x91, 0x91, 'e', 'E', 'E', 0x84, 0xE8},     // ë
    {0x92, 0x92, 'i', 'I', 'I', 0x81, 0xEA},     // í
    {0x93, 0x93, 'i', 'I', 'I', 0x82, 0xED},     // ì
    {0x94, 0x94, 'i', 'I', 'I', 0x83, 0xEB},     // î
    {0x95, 0x95, 'i', 'I', 'I', 0x84, 0xEC},     // ï
    {0x96, 0x84, 'n', 'N', 'N', 0x81, 0x84},     // ñ
    {0x97, 0x97, 'o', 'O', 'O', 0x81, 0xEE},     // ó
    {0x98, 0x98, 'o', 'O', 'O', 0x82, 0xF1},     // ò
    {0x99, 0x99, 'o', 'O', 'O', 0x83, 0xEF},     // ô
    {0x9A, 0x85, 'o', 'O', 'O', 0x84, 0x85},     // ö
    {0x9B, 0xCD, 'o', 'O', 'O', 0x85, 0xCD},     // õ
    {0x9C, 0x9C, 'u', 'U', 'U', 0x81, 0xF2},     // ú
    {0x9D, 0x9D, 'u', 'U', 'U', 0x82, 0xF4},     // ù
    {0x9E, 0x9E, 'u', 'U', 'U', 0x83, 0xF3},     // û
    {0x9F, 0x86, 'u', 'U', 'U', 0x84, 0x86},     // ü
    {0xAE, 0xAE, 0xAE, 0xAE, 0xAE, 0x00, 0xAE},  // Æ
    {0xAF, 0xAF, 'O', 'O', 'O', 0x03, 0xAF},     // Ø
    {0xBB, 0xBB, 'a', 'A', 0xBB, 0x00, 0xBB},    // ª
    {0xBC, 0xBC, 'o', 'O', 0xBC, 0x00, 0xBC},    // º
    {0xBE, 0xAE, 0xBE, 0xAE, 0xAE, 0x01, 0xAE},  // æ
    {0xBF, 0xAF, 'o', 'O', 'O', 0x86, 0xAF},     // ø
    {0xC7, 0xC7, 0xC7, 0xC7, '"', 0x01, 0xC7},   // «
    {0xC8, 0xC8, 0xC8, 0xC8, '"', 0x02, 0xC8},   // »
    {0xCA, 0xCA, 0x20, 0x20, 0x20, 0x01, 0xCA},  // nbsp
    {0xCB, 0xCB, 'A', 'A', 'A', 0x01, 0xCB},     // À
    {0xCC, 0xCC, 'A', 'A', 'A', 0x03, 0xCC},     // Ã
    {0xCD, 0xCD, 'O', 'O', 'O', 0x02, 0xCD},     // Õ
    {0xCE, 0xCE, 0xCE, 0xCE, 0xAE, 0x02, 0xCE},  // Œ
    {0xCF, 0xCE, 0xCF, 0xCE, 0xAE, 0x03, 0xCE},  // œ
    {0xD2, 0xD2, 0xD2, 0xD2, '"', 0x03, 0xD2},   // “
    {0xD3, 0xD3, 0xD3, 0xD3, '"', 0x04, 0xD3},   // ”
    {0xD4, 0xD4, 0xD4, 0xD4, '\'', 0x01, 0xD4},  // ‘
    {0xD5, 0xD5, 0xD5, 0xD5, '\'', 0x02, 0xD5},  // ’
    {0xD8, 0xD8, 'y', 'Y', 'Y', 0x00, 0xD9},     // ÿ
    {0xD9, 0xD9, 0xD9, 0xD9, 0xD9, 0x00, 0xD9},  // Ÿ
};

constexpr unsigned kToSmall = 'a' - 'A';

constexpr ByteTable Identity() {
    ByteTable table{};
    for (unsigned code = 0; code < 256; ++code) table[code] = UInt8(code);
    return table;
}

constexpr ByteTable AsciiCapitals() {
    ByteTable table = Identity();
    for (unsigned code = 'a'; code <= 'z'; ++code) table[code] = UInt8(code - kToSmall);
    return table;
}

constexpr ByteTable WithColumn(ByteTable inTable, UInt8 Row::*inColumn) {
    for (const Row& row : kRows) inTable[row.code] = row.*inColumn;
    return inTable;
}

constexpr ByteTable Secondaries() {
    ByteTable table{};
    for (unsigned code = 'a'; code <= 'z'; ++code) table[code] = 0x80;
    return WithColumn(table, &Row::secondary);
}

// Every capital goes back to the one letter it came from.
constexpr ByteTable SmallLetters() {
    ByteTable table = Identity();
    for (unsigned code = 'A'; code <= 'Z'; ++code) table[code] = UInt8(code + kToSmall);
    for (const Row& row : kRows)
        if (row.textCapital != row.code) table[row.textCapital] = row.code;
    return table;
}

constexpr ByteTable Chained(const ByteTable& inFirst, const ByteTable& inSecond) {
    ByteTable table{};
    for (unsigned code = 0; code < 256; ++code) table[code] = inSecond[inFirst[code]];
    return table;
}

constexpr UInt8 kHardSpace = 0xCA;

// File names in order, from after the space to the high codes, which follow by number.
constexpr std::string_view kOrderedMiddle =
    "!\"\xD2\xD3\xC7\xC8#$%&'\xD4\xD5()*+,-./0123456789:;<=>?@"
    "A\xCB\x80\xCC\x81\xAE"
    "a\x87\x88\x89\x8A\x8B\x8C\xBB\xBE"
    "BbC\x82"
    "c\x8D"
    "DdE\x83"
    "e\x8E\x8F\x90\x91"
    "FfGgHhIi\x92\x93\x94\x95JjKkLlMmN\x84n\x96"
    "O\x85\xCD\xAF\xCEo\x97\x98\x99\x9A\x9B\xBF\xBC\xCF"
    "PpQqRrSs\xA7TtU\x86u\x9C\x9D\x9E\x9F"
    "VvWwXxYy\xD8Zz[\\]^_`{|}~\x7F";

constexpr ByteTable NameOrder() {
    ByteTable order{};
    UInt8 position = 0;
    for (unsigned code = 0; code <= ' '; ++code) order[code] = position++;
    order[kHardSpace] = order[' '];
    for (const char c : kOrderedMiddle) order[UInt8(c)] = position++;
    for (unsigned code = 0x80; code < 256; ++code)
        if (!order[code]) order[code] = position++;
    return order;
}

constexpr ByteTable kAsIs = Identity();
constexpr ByteTable kCapitals = WithColumn(AsciiCapitals(), &Row::capital);
constexpr ByteTable kUnmarkedCapitals = WithColumn(AsciiCapitals(), &Row::unmarkedCapital);

}  // namespace

constexpr ByteTable kNameOrder = NameOrder();
constexpr ByteTable kTextPrimaries = WithColumn(AsciiCapitals(), &Row::primary);
constexpr ByteTable kTextSecondaries = Secondaries();
constexpr ByteTable kTextCapitals = WithColumn(AsciiCapitals(), &Row::textCapital);
constexpr ByteTable kTextSmallLetters = SmallLetters();
constexpr ByteTable kTextUnmarked = WithColumn(Identity(), &Row::unmarked);
constexpr ByteTable kTextUnmarkedCapitals = Chained(kTextUnmarked, kTextCapitals);

const ByteTable& NameFolding(bool inCaseCounts, bool inMarksCount) {
    if (inCaseCounts) return inMarksCount ? kAsIs : kTextUnmarked;
    return inMarksCount ? kCapitals : kUnmarkedCapitals;
}

}  // namespace carbon
