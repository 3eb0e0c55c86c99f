// Numbers as text and back: plain decimals, and formats such as "###,##0.00;(###,##0.00);zero".
//
// A format has one, two or three parts, for positive, negative and zero values, with the separator
// (;) between them. Two parts leave zero to the first; one part serves all, and puts the minus sign
// in front of a negative value unless it has a sign of its own. In a part, with the symbols of the
// system's number parts:
//   #  0  ^   the place of a digit; without one: nothing, a zero, the leader (a hard space)
//   ,         the thousands symbol, if a digit stands before it
//   .         the decimal point. More digits than places are rounded
//   %         the percent symbol; the number shown is the value times 100
//   + -       in a format of one part the value's sign, '-' for negative values only; in a part of
//             several these signs themselves
//   E+ E-     an exponent, the places of its digits follow; E- shows the sign of negative ones only
//   'text'    the text; \ before any character is that character, also between quotes
//   ( ) space $ / : *   themselves
// Any other character is skipped. An empty format leaves the form to the number.
#ifndef CARBON_NUMBERFORMATTING_H
#define CARBON_NUMBERFORMATTING_H

#include <Carbon/IntlResources.h>
#include <Carbon/MacTypes.h>

#pragma pack(push, 2)

// A format in the form that the calls below use it. The data is theirs alone.
struct NumFormatString {
    UInt8 fLength;   // the bytes used behind it
    UInt8 fVersion;  // fVNumber
    char data[254];
};
typedef struct NumFormatString NumFormatString;
typedef struct NumFormatString NumFormatStringRec;

enum { fVNumber = 0 };

// Where a part of a format stands in its text: the first character (0 is the text's first) and how
// many there are.
struct FVector {
    SInt16 start;
    SInt16 length;
};
typedef struct FVector FVector;
typedef FVector TripleInt[3];

typedef SInt8 FormatClass;
enum { fPositive = 0, fNegative = 1, fZero = 2 };

#pragma pack(pop)

typedef SInt16 FormatStatus;  // a FormatResultType in the low byte
typedef SInt8 FormatResultType;
enum {
    fFormatOK = 0,
    fBestGuess = 1,         // a number in this form, but not written as the format writes it
    fOutOfSynch = 2,        // a number, but not in this form
    fSpuriousChars = 3,     // characters that mean nothing here were skipped
    fMissingDelimiter = 4,  // a quote is not closed
    fExtraDecimal = 5,      // a second decimal point
    fMissingLiteral = 6,    // a text of the format is not there, or nothing follows an escape
    fExtraExp = 7,          // a second exponent
    fFormatOverflow = 8,    // more digits than places, or than 255 characters
    fFormStrIsNAN = 9,      // not a number, or not a format
    fBadPartsTable = 10,    // two of the symbols are the same, or one that is needed is not there
    fExtraPercent = 11,     // a second percent symbol
    fExtraSeparator = 12,   // more than three parts
    fEmptyFormatString = 13
};

PLATFORM_DECLARATIONS_BEGIN

// The number in decimal, '-' before a negative one, without separators: at most 11 characters. The
// caller provides a string with room for them.
void NumToString(SInt32 theNum, Str255 theString);

// The number that a text stands for. Nothing is checked: after one optional '-' or '+' the low four
// bits of every character count as a digit, ten and more included, and the sum wraps at 32 bits. An
// empty text gives 0.
void StringToNum(ConstStr255Param theString, SInt32* theNum);

// Reads a format. Results 0, 3 and 13 (an empty format: numbers in any form) leave a format to work
// with; any other one, also 9 for a format too long to be held, leaves what the calls below answer
// with fFormStrIsNAN. A table in which two of the first 14 symbols are the same gives
// fBadPartsTable, but for the two quotes, and the leader and its place.
FormatStatus StringToFormatRec(ConstStr255Param inString, const NumberParts* partsTable,
                               NumFormatString* outString);

// Writes a format with the symbols of any parts table, and says where its parts stand (length 0
// for those that it does not have; `positions` may be null). An empty text after any result but 0.
// Returns fFormStrIsNAN, fEmptyFormatString, fBadPartsTable when a symbol that it needs is not
// there, or fFormatOverflow when it has more than 255 characters.
FormatStatus FormatRecToString(const NumFormatString* myCanonical, const NumberParts* partsTable,
                               Str255 outString, TripleInt positions);

// A number in a format; `outString` holds 256 bytes. fFormatOverflow comes with the whole number,
// cut at 255 characters. A value that is no number, or infinite, gives fFormStrIsNAN with "NAN" or
// "INF" as the text; what is no format, or a bad parts table, its code and an empty text.
FormatStatus ExtendedToString(const extended80* x, const NumFormatString* myCanonical,
                              const NumberParts* partsTable, Str255 outString);

// Reads a number. A text that does not follow the format is read as it stands: an optional sign,
// digits with thousands symbols, a decimal point, an exponent, percent; other characters are
// skipped. A text without digits gives fFormStrIsNAN and NaN, and so does what is no format.
FormatStatus StringToExtended(ConstStr255Param inString, const NumFormatString* myCanonical,
                              const NumberParts* partsTable, extended80* x);

PLATFORM_DECLARATIONS_END

#endif
