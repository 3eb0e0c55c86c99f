// The symbols that numbers are written with in a region.
#ifndef CARBON_INTLRESOURCES_H
#define CARBON_INTLRESOURCES_H

#include <Carbon/MacTypes.h>

// The symbol of token t is data[t - 1] of a NumberParts.
enum {
    tokLeftQuote = 1,  // before and after characters that stand for themselves
    tokRightQuote = 2,
    tokLeadPlacer = 3,  // a digit, or the leader
    tokLeader = 4,      // what stands in front of a number to fill its width
    tokNonLeader = 5,   // a digit, or nothing
    tokZeroLead = 6,    // a digit, or zero
    tokPercent = 7,
    tokPlusSign = 8,
    tokMinusSign = 9,
    tokThousands = 10,
    tokReserved = 11,
    tokSeparator = 12,  // between the parts of a format
    tokEscape = 13,     // the next character stands for itself
    tokDecPoint = 14,
    tokEPlus = 15,  // the exponent's notations, in formats only
    tokEMinus = 16,
    tokMaxSymbols = 31  // from 15 to here: characters that stand for themselves without quotes
};

enum { curNumberPartsVersion = 1 };

#pragma pack(push, 2)

// A character of one byte (its code) or two (the first in the high byte); 0 is none. `b` and the
// two bytes are one number in the machine's byte order.
union WideChar {
    struct {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
        char hi;
        char lo;
#else
        char lo;
        char hi;
#endif
    } a;
    SInt16 b;
};
typedef union WideChar WideChar;

// Up to ten characters. They end at the first 0; `size`, their number, is not relied on.
struct WideCharArr {
    SInt16 size;
    WideChar data[10];
};
typedef struct WideCharArr WideCharArr;

// 172 bytes, in the machine's byte order in memory. In a resource ('itl4', 'NoPt') every number of
// it, each character included, is big-endian.
struct NumberParts {
    SInt16 version;           // curNumberPartsVersion
    WideChar data[31];        // the symbols
    WideCharArr pePlus;       // before a positive exponent
    WideCharArr peMinus;      // before a negative one
    WideCharArr peMinusPlus;  // before a positive one in a format that shows only minus signs
    WideCharArr altNumTable;  // digits 0 to 9 in another form, understood beside the usual ones
    char reserved[20];
};
typedef struct NumberParts NumberParts;
typedef NumberParts* NumberPartsPtr;

#pragma pack(pop)

#endif
