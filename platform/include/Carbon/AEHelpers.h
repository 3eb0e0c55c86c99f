// Descriptors and events from text, and text from them.
//
// A value in the text is one of
//   123, -5            'long'; 'comp' when 32 bits do not hold it
//   abcd, 'ab d'       a code of up to four characters, filled up with spaces; type 'enum'
//   'type' and '(' value ')'   the value coerced to a type: shor(3), type(pnam), utxt("abc"),
//                      doub("2.5"); data that no coercion concerns takes the type as it is;
//                      empty parentheses are a value without data, null() the null descriptor
//   "text"             'TEXT', the bytes between the quotes
//   type($0A0B$)       bytes in hexadecimal, always inside a type
//   [ a, b ]           a list
//   { key: a, k2: b }  a record; typ{ ... } one of another type, as in obj{ ... }
//   class\id{ ... }    a whole event; parameters as below
//   @                  the next argument, as below
// Codes that hold a minus sign, a space or punctuation are quoted: '----'. A code of any bytes can
// be written as '$0A0B0C0D$'. Texts hold no double quote; those that need one are TEXT($...$).
//
// Parameters are `key: value` in a row, separated by commas. A tilde before the key makes the
// parameter optional (its key joins the attribute 'optk'), an ampersand makes an attribute of it,
// read-only ones included.
//
// Arguments. `@` alone takes a const AEDesc*, which is copied. Inside a type it takes: an int for
// bool and shor, SInt32 for long, UInt32 for magn, SInt64 for comp, double for sing and doub,
// OSType for type, enum, keyw, prop and sign, const char* up to its zero byte for TEXT, and for
// every other type two: a Size in bytes and a const void*, whose bytes are taken as they are. `@@`,
// always inside a type, takes a Handle. Numbers come in the machine's order and go big-endian into
// the descriptor.
#ifndef CARBON_AEHELPERS_H
#define CARBON_AEHELPERS_H

#include <stdarg.h>

#include <Carbon/AEDataModel.h>

PLATFORM_DECLARATIONS_BEGIN

typedef UInt32 AEBuildErrorCode;
enum {
    aeBuildSyntaxNoErr = 0,
    aeBuildSyntaxBadToken = 1,           // a character or a code that means nothing
    aeBuildSyntaxBadEOF = 2,             // the text ends where a value should come
    aeBuildSyntaxNoEOF = 3,              // something follows the value
    aeBuildSyntaxBadNegative = 4,        // a minus sign without digits
    aeBuildSyntaxMissingQuote = 5,       // a code without its second quote
    aeBuildSyntaxBadHex = 6,             // no hexadecimal digit
    aeBuildSyntaxOddHex = 7,             // half a byte
    aeBuildSyntaxNoCloseHex = 8,         // bytes without their second dollar sign
    aeBuildSyntaxUncoercedHex = 9,       // bytes outside a type
    aeBuildSyntaxNoCloseString = 10,     // a text without its second quote
    aeBuildSyntaxBadDesc = 11,           // no value, or values nested too deep
    aeBuildSyntaxBadData = 12,           // a value that its type cannot hold
    aeBuildSyntaxNoCloseParen = 13,      // no ')' after a value
    aeBuildSyntaxNoCloseBracket = 14,    // neither ',' nor ']' in a list
    aeBuildSyntaxNoCloseBrace = 15,      // neither ',' nor '}' in a record
    aeBuildSyntaxNoKey = 16,             // no keyword where one should come
    aeBuildSyntaxNoColon = 17,           // no ':' after a keyword
    aeBuildSyntaxCoercedList = 18,       // a list inside a type
    aeBuildSyntaxUncoercedDoubleAt = 19  // `@@` outside a type
};

#pragma pack(push, 2)
// Why a text could not be read: the code, and the offset in bytes of what it complains about.
typedef struct AEBuildError {
    AEBuildErrorCode fError;
    UInt32 fErrorPos;
} AEBuildError;
#pragma pack(pop)

// One value. `error` may be null; without an error it receives aeBuildSyntaxNoErr and 0.
// `dst` is the null descriptor after a failure; the caller disposes it.
// Returns errAEBuildSyntaxError, which `error` explains; paramErr for null pointers and arguments
// nested too deep; errors of coercions; memFullErr.
OSStatus AEBuildDesc(AEDesc* dst, AEBuildError* error, const char* src, ...);
OSStatus vAEBuildDesc(AEDesc* dst, AEBuildError* error, const char* src, va_list args);

// Puts parameters and attributes into an event that is there already, in the place of those with
// the same keys. After a failure the event is as it was. errAENotAEDesc for what is no event.
OSStatus AEBuildParameters(AppleEvent* event, AEBuildError* error, const char* format, ...);
OSStatus vAEBuildParameters(AppleEvent* event, AEBuildError* error, const char* format,
                            va_list args);

// A new event, as AECreateAppleEvent makes it, with these parameters.
//   addressType, addressData, addressLength   the target, big-endian, size in bytes
//   paramsFmt                                 may be null: no parameters
OSStatus AEBuildAppleEvent(AEEventClass theClass, AEEventID theID, DescType addressType,
                           const void* addressData, Size addressLength, SInt16 returnID,
                           SInt32 transactionID, AppleEvent* result, AEBuildError* error,
                           const char* paramsFmt, ...);
OSStatus vAEBuildAppleEvent(AEEventClass theClass, AEEventID theID, DescType addressType,
                            const void* addressData, Size addressLength, SInt16 returnID,
                            SInt32 transactionID, AppleEvent* resultEvt, AEBuildError* error,
                            const char* paramsFmt, va_list args);

// The descriptor as text that AEBuildDesc makes the same descriptor of. The text is ASCII on one
// line; what has no natural form is written in hexadecimal.
//   result   receives a new handle whose size is the length of the text, without a zero byte;
//            the caller disposes it; null after a failure
// Returns paramErr for null pointers, memFullErr.
OSStatus AEPrintDescToHandle(const AEDesc* desc, Handle* result);

PLATFORM_DECLARATIONS_END

#endif
