// Numbers and truth values as objects.
#ifndef COREFOUNDATION_CFNUMBER_H
#define COREFOUNDATION_CFNUMBER_H

#include <CoreFoundation/CFBase.h>

typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFNumber* CFNumberRef;

// What a value pointer points to, in the machine's byte order. The types named after the C language
// have the sizes the compiler gives them (kCFNumberLongType: long).
typedef SInt32 CFNumberType;
enum {
    kCFNumberSInt8Type = 1,
    kCFNumberSInt16Type = 2,
    kCFNumberSInt32Type = 3,
    kCFNumberSInt64Type = 4,
    kCFNumberFloat32Type = 5,
    kCFNumberFloat64Type = 6,
    kCFNumberCharType = 7,
    kCFNumberShortType = 8,
    kCFNumberIntType = 9,
    kCFNumberLongType = 10,
    kCFNumberLongLongType = 11,
    kCFNumberFloatType = 12,
    kCFNumberDoubleType = 13,
    kCFNumberCFIndexType = 14,
    kCFNumberMaxType = 14
};

PLATFORM_DECLARATIONS_BEGIN

extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;

extern const CFNumberRef kCFNumberPositiveInfinity;
extern const CFNumberRef kCFNumberNegativeInfinity;
extern const CFNumberRef kCFNumberNaN;

CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);

CFTypeID CFNumberGetTypeID(void);

// A number from the value at valuePtr; NULL for an unknown type.
CFNumberRef CFNumberCreate(CFAllocatorRef allocator, CFNumberType theType, const void* valuePtr);

// How the number is kept: one of the first six types.
CFNumberType CFNumberGetType(CFNumberRef number);
CFIndex CFNumberGetByteSize(CFNumberRef number);
Boolean CFNumberIsFloatType(CFNumberRef number);

// Writes the number as theType; true when nothing was lost. A value outside the type's range gives
// the type's nearest one, NaN gives 0 in an integer. An unknown type writes nothing.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void* valuePtr);

// By value, whatever the types; NaN comes before every other number. `context` is unused.
CFComparisonResult CFNumberCompare(CFNumberRef number, CFNumberRef otherNumber, void* context);

PLATFORM_DECLARATIONS_END

#endif
