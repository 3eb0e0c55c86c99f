// The types that every other header builds on, and the debugger calls.
//
// Numbers have the widths this platform always had: where its documentation says `long`, the type
// here is SInt32 or UInt32, since a C `long` may have 64 bits. In-memory records are in the
// machine's byte order; bytes that leave a process (descriptor data, resources, files) are
// big-endian.
#ifndef CARBON_MACTYPES_H
#define CARBON_MACTYPES_H

#include <Platform/Declarations.h>
#include <stddef.h>
#include <stdint.h>

// Four-character codes are written as 'abcd', first character in the high byte.
#pragma GCC diagnostic ignored "-Wmultichar"
#ifdef __clang__
#pragma clang diagnostic ignored "-Wfour-char-constants"
#endif

#ifndef NULL
#define NULL 0
#endif
#ifndef nil
#define nil NULL
#endif

typedef uint8_t UInt8;
typedef int8_t SInt8;
typedef uint16_t UInt16;
typedef int16_t SInt16;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef uint64_t UInt64;
typedef int64_t SInt64;
typedef float Float32;
typedef double Float64;

typedef UInt8 Byte;
typedef SInt8 SignedByte;
typedef unsigned char Boolean;  // 0 or 1
typedef UInt8* BytePtr;

enum { noErr = 0 };
typedef SInt16 OSErr;     // a result code, see MacErrors.h
typedef SInt32 OSStatus;  // a result code, see MacErrors.h

typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
typedef FourCharCode ResType;
typedef OSType* OSTypePtr;
typedef ResType* ResTypePtr;

typedef SInt32 Size;  // bytes
typedef UInt32 OptionBits;
typedef UInt32 ItemCount;
typedef UInt32 ByteCount;
typedef UInt32 ByteOffset;
typedef SInt32 Duration;
typedef SInt32 Fixed;  // 16.16
typedef SInt16 ScriptCode;
typedef SInt16 LangCode;
typedef SInt16 RegionCode;

typedef UInt16 UniChar;  // one UTF-16 unit
typedef UInt32 UniCharCount;
typedef UniChar* UniCharPtr;

typedef char* Ptr;
typedef Ptr* Handle;  // points to a master pointer, see MacMemory.h
typedef SInt32 (*ProcPtr)(void);
typedef ProcPtr UniversalProcPtr;  // procedure pointers need no wrapping here

// Pascal strings: a length byte, then that many characters (MacRoman unless a call says otherwise).
typedef unsigned char Str255[256];
typedef unsigned char Str63[64];
typedef unsigned char Str32[33];
typedef unsigned char Str31[32];
typedef unsigned char Str27[28];
typedef unsigned char Str15[16];
typedef Str63 StrFileName;
typedef unsigned char* StringPtr;
typedef StringPtr* StringHandle;
typedef const unsigned char* ConstStringPtr;
typedef const unsigned char* ConstStr255Param;
typedef const unsigned char* ConstStr63Param;
typedef const unsigned char* ConstStr32Param;
typedef const unsigned char* ConstStr31Param;
typedef const unsigned char* ConstStr27Param;
typedef const unsigned char* ConstStr15Param;
typedef ConstStr63Param ConstStrFileNameParam;

#pragma pack(push, 2)

struct Point {
    SInt16 v;
    SInt16 h;
};
typedef struct Point Point;

struct Rect {
    SInt16 top;
    SInt16 left;
    SInt16 bottom;
    SInt16 right;
};
typedef struct Rect Rect;

// A version: major revision in BCD, minor and bug-fix revision as one BCD byte, stage, revision
// within the stage. The first byte is the major revision on every machine, as in a 'vers' resource.
struct NumVersion {
    UInt8 majorRev;
    UInt8 minorAndBugRev;
    UInt8 stage;
    UInt8 nonRelRev;
};
typedef struct NumVersion NumVersion;

enum { developStage = 0x20, alphaStage = 0x40, betaStage = 0x60, finalStage = 0x80 };

// A number of 80 bits: the sign above 15 bits of exponent (16383 more than it is), then 64 bits of
// mantissa, the highest 16 first, whose top bit is the integer. The five numbers are in the
// machine's byte order.
struct Float80 {
    SInt16 exp;
    UInt16 man[4];
};
typedef struct Float80 Float80;
typedef struct Float80 extended80;

struct UnsignedWide {
    UInt32 hi;
    UInt32 lo;
};
typedef struct UnsignedWide UnsignedWide;

// A signed number of 64 bits, its high half first.
struct wide {
    SInt32 hi;
    UInt32 lo;
};
typedef struct wide wide;

// Names one process while it runs. {0, 0} is no process, {0, 2} the calling one; real numbers are
// never used again.
struct ProcessSerialNumber {
    UInt32 highLongOfPSN;
    UInt32 lowLongOfPSN;
};
typedef struct ProcessSerialNumber ProcessSerialNumber;
typedef ProcessSerialNumber* ProcessSerialNumberPtr;

#pragma pack(pop)

PLATFORM_DECLARATIONS_BEGIN

// Enters the debugger that the program set (see Platform/Platform.h). Without one, a line goes to
// standard error and the program goes on.
void Debugger(void);

// The same with a text. A null text counts as an empty one.
void DebugStr(ConstStr255Param debuggerMsg);

PLATFORM_DECLARATIONS_END

#endif
