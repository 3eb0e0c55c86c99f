// Binary numbers to decimal ones and back, and the 80-bit form of numbers.
#ifndef CARBON_FP_H
#define CARBON_FP_H

#include <Carbon/MacTypes.h>

enum { SIGDIGLEN = 36, DECSTROUTLEN = 80 };
enum { FLOATDECIMAL = 0, FIXEDDECIMAL = 1 };

#pragma pack(push, 2)

// A decimal number: its digits as a whole number, times 10 to the power `exp`, negative when `sgn`
// is 1. Digits "0" are zero, "I" infinity, "N" with four hexadecimal digits NaN; `exp` means
// nothing for these.
struct decimal {
    char sgn;
    char unused;
    SInt16 exp;
    struct {
        UInt8 length;
        UInt8 text[SIGDIGLEN];
        UInt8 unused;
    } sig;
};
typedef struct decimal decimal;

// How many digits to make: `digits` in all (FLOATDECIMAL) or behind the point (FIXEDDECIMAL).
struct decform {
    char style;
    char unused;
    SInt16 digits;
};
typedef struct decform decform;

#pragma pack(pop)

PLATFORM_DECLARATIONS_BEGIN

// The number rounded to decimal, never to more than 36 digits. FLOATDECIMAL makes exactly `digits`
// (1 to 36); FIXEDDECIMAL rounds at that many behind the point, or in front of it for a negative
// count.
void num2dec(const decform* f, double x, decimal* d);

// The nearest binary number. What is no decimal number gives NaN.
double dec2num(const decimal* d);

// The decimal number as a zero-terminated text of at most 80 characters. FLOATDECIMAL: a space or
// '-', one digit, the others behind a point, and an exponent (" 1.0000e+0"). FIXEDDECIMAL: no space
// and no exponent ("1.00"). Infinity is "INF", NaN is "NAN(017)" with its code; a longer text is
// "?" instead.
void dec2str(const decform* f, const decimal* d, char* s);

// Reads a decimal number from the text at index *ix, after spaces and tabs. *ix becomes the index
// behind it, and stays without a number, which gives NaN. *vp is 1 if the rest of the text, to its
// end, is a number or the beginning of one ("1.5e"), else 0. Digits beyond 36 are not kept.
void str2dec(const char* s, SInt16* ix, decimal* d, SInt16* vp);

// The 80-bit form of a number, without loss, and the nearest number to one (infinity when it is
// too large).
void dtox80(const double* x, extended80* x80);
double x80tod(const extended80* x80);

PLATFORM_DECLARATIONS_END

#endif
