// Unicode strings, measured in UTF-16 units. Any units are allowed, zeros and lone surrogates
// included.
//
// Bytes become text in an encoding that the caller names. MacRoman (0) is the system encoding.
// Unless a call says otherwise a range must lie inside its string; here ranges that do not are
// answered by NULL or "not found" when reading and are cut to the string when writing.
#ifndef COREFOUNDATION_CFSTRING_H
#define COREFOUNDATION_CFSTRING_H

#include <CoreFoundation/CFArray.h>
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFData.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFLocale.h>
#include <stdarg.h>

typedef UInt32 CFStringEncoding;
typedef UInt32 CFStringBuiltInEncodings;
enum {
    kCFStringEncodingMacRoman = 0,
    kCFStringEncodingWindowsLatin1 = 0x0500,
    kCFStringEncodingISOLatin1 = 0x0201,
    kCFStringEncodingASCII = 0x0600,
    kCFStringEncodingUnicode = 0x0100,
    kCFStringEncodingUTF8 = 0x08000100,
    kCFStringEncodingUTF16 = 0x0100,
    kCFStringEncodingUTF16BE = 0x10000100,
    kCFStringEncodingUTF16LE = 0x14000100,
    kCFStringEncodingUTF32 = 0x0c000100,
    kCFStringEncodingUTF32BE = 0x18000100,
    kCFStringEncodingUTF32LE = 0x1c000100
};
#define kCFStringEncodingInvalidId (0xffffffffU)

// How strings are compared and searched; the values add up.
typedef CFOptionFlags CFStringCompareFlags;
enum {
    kCFCompareCaseInsensitive = 1,
    kCFCompareBackwards = 4,    // search: from the end
    kCFCompareAnchored = 8,     // search: only at the start of the range (its end when backwards)
    kCFCompareNonliteral = 16,  // canonically equivalent texts match
    kCFCompareLocalized = 32,   // changes nothing
    kCFCompareNumerically = 64  // compare: runs of ASCII digits by value
};

typedef CFIndex CFStringNormalizationForm;
enum {
    kCFStringNormalizationFormD = 0,
    kCFStringNormalizationFormKD = 1,
    kCFStringNormalizationFormC = 2,
    kCFStringNormalizationFormKC = 3
};

// A constant string, never freed; equal literals give one object. Characters over 127 are MacRoman.
#define CFSTR(cStr) __CFStringMakeConstantString("" cStr "")

// A window on a string that is read unit by unit; see CFStringInitInlineBuffer.
struct CFStringInlineBuffer {
    UniChar buffer[64];
    CFStringRef theString;
    const UniChar* directBuffer;
    CFRange rangeToBuffer;
    CFIndex bufferedRangeStart;
    CFIndex bufferedRangeEnd;
};
typedef struct CFStringInlineBuffer CFStringInlineBuffer;

PLATFORM_DECLARATIONS_BEGIN

CFStringRef __CFStringMakeConstantString(const char* cStr);

CFTypeID CFStringGetTypeID(void);

// --- Making strings. `alloc` is ignored unless a call says otherwise. All give NULL for bytes that
// --- are not valid in the encoding, for an encoding that is not available, and for counts below 0.

// A Pascal or C string. NULL for pStr or cStr stops the program.
CFStringRef CFStringCreateWithPascalString(CFAllocatorRef alloc, ConstStr255Param pStr,
                                           CFStringEncoding encoding);
CFStringRef CFStringCreateWithCString(CFAllocatorRef alloc, const char* cStr,
                                      CFStringEncoding encoding);

// `numBytes` bytes. An external representation may start with a byte-order mark, which is dropped;
// UTF-16 and UTF-32 without one are big-endian when external, in the machine's order when not. A
// mark at the start of UTF-8 is always dropped; the BE and LE forms keep theirs as U+FEFF. An odd
// last byte of UTF-16 is ignored.
CFStringRef CFStringCreateWithBytes(CFAllocatorRef alloc, const UInt8* bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);

// `numChars` UTF-16 units in the machine's byte order.
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef alloc, const UniChar* chars,
                                         CFIndex numChars);

// The same for bytes that the string takes over: they are freed with contentsDeallocator (NULL: the
// default allocator; kCFAllocatorNull: not at all) once they are no longer needed, which may be
// before the call returns. When NULL is returned the caller keeps them.
CFStringRef CFStringCreateWithPascalStringNoCopy(CFAllocatorRef alloc, ConstStr255Param pStr,
                                                 CFStringEncoding encoding,
                                                 CFAllocatorRef contentsDeallocator);
CFStringRef CFStringCreateWithCStringNoCopy(CFAllocatorRef alloc, const char* cStr,
                                            CFStringEncoding encoding,
                                            CFAllocatorRef contentsDeallocator);
CFStringRef CFStringCreateWithCharactersNoCopy(CFAllocatorRef alloc, const UniChar* chars,
                                               CFIndex numChars,
                                               CFAllocatorRef contentsDeallocator);

// Part of a string; NULL when the range does not lie inside it. The whole of an immutable string is
// that string, retained.
CFStringRef CFStringCreateWithSubstring(CFAllocatorRef alloc, CFStringRef str, CFRange range);

// An immutable string with the same text; an immutable `theString` itself, retained.
CFStringRef CFStringCreateCopy(CFAllocatorRef alloc, CFStringRef theString);

// Text with values put in. Specifiers: %@ object (its text, a number's digits, else a description);
// %s C string and %P Pascal string in the system encoding; %S zero-terminated UniChars; %c
// character in the system encoding; %C UniChar; %d %D %i %u %U %x %X %o %O with h, hh, l, ll, q; %e
// %E %f %g %G; %p; %%. Flags - + space 0, width and precision (* too), positions (%2$@).
// Numbers are written as in the C locale, whatever the process's locale. NULL objects and strings
// give "(null)"; %n is not a specifier: unknown letters are written as they are. formatOptions must
// be NULL.
CFStringRef CFStringCreateWithFormat(CFAllocatorRef alloc, CFDictionaryRef formatOptions,
                                     CFStringRef format, ...);
CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef alloc,
                                                 CFDictionaryRef formatOptions, CFStringRef format,
                                                 va_list arguments);

// A mutable string; a maxLength over 0 limits its length in units (edits beyond it are cut).
CFMutableStringRef CFStringCreateMutable(CFAllocatorRef alloc, CFIndex maxLength);
CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef alloc, CFIndex maxLength,
                                             CFStringRef theString);

// External representation of a text and back (see CFStringCreateWithBytes). lossByte replaces what
// the encoding cannot say; 0 makes that a failure (NULL).
CFStringRef CFStringCreateFromExternalRepresentation(CFAllocatorRef alloc, CFDataRef data,
                                                     CFStringEncoding encoding);
CFDataRef CFStringCreateExternalRepresentation(CFAllocatorRef alloc, CFStringRef theString,
                                               CFStringEncoding encoding, UInt8 lossByte);

// --- Reading.

CFIndex CFStringGetLength(CFStringRef theString);  // UTF-16 units

// One unit; 0 for an index outside the string.
UniChar CFStringGetCharacterAtIndex(CFStringRef theString, CFIndex idx);

// Copies the units of the range, without a terminator; of a range that leaves the string only what
// exists.
void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer);

// Bytes and a terminating zero, or false when the text cannot be said in the encoding or
// bytes + 1 > bufferSize. Never cut: on failure the buffer holds an empty string.
Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding);

// The same with a length byte in front; also false for more than 255 bytes.
Boolean CFStringGetPascalString(CFStringRef theString, StringPtr buffer, CFIndex bufferSize,
                                CFStringEncoding encoding);

// Converts as many units of the range as fit into maxBufLen bytes and can be said in the encoding
// (lossByte other than 0 stands in for those that cannot), never splitting a character. Returns
// the number of UTF-16 units converted; *usedBufLen, if not NULL, is set to the bytes. A NULL
// buffer only measures. An external representation gets a byte-order mark in UTF-8, UTF-16 and
// UTF-32.
CFIndex CFStringGetBytes(CFStringRef theString, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer,
                         CFIndex maxBufLen, CFIndex* usedBufLen);

// The text in place when the string happens to store it so, else NULL: be ready for NULL always.
const char* CFStringGetCStringPtr(CFStringRef theString, CFStringEncoding encoding);
ConstStringPtr CFStringGetPascalStringPtr(CFStringRef theString, CFStringEncoding encoding);
const UniChar* CFStringGetCharactersPtr(CFStringRef theString);

// A string's name for the file system: UTF-8 and a terminating zero, letters decomposed. False when
// it does not fit or cannot be said.
Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char* buffer, CFIndex maxBufLen);
CFIndex CFStringGetMaximumSizeOfFileSystemRepresentation(CFStringRef string);
CFStringRef CFStringCreateWithFileSystemRepresentation(CFAllocatorRef alloc, const char* buffer);

// A number at the start of the text, after white space; 0 without one. Too large a whole number
// gives the nearest value.
SInt32 CFStringGetIntValue(CFStringRef str);
double CFStringGetDoubleValue(CFStringRef str);

// --- Encodings.

CFStringEncoding CFStringGetSystemEncoding(void);  // kCFStringEncodingMacRoman
Boolean CFStringIsEncodingAvailable(CFStringEncoding encoding);

// All available encodings, kCFStringEncodingInvalidId at the end. Not owned.
const CFStringEncoding* CFStringGetListOfAvailableEncodings(void);

// An encoding's name for developers, lent, and its registered name on the Internet ("utf-8"), lent
// too, and back, whatever the case; NULL and kCFStringEncodingInvalidId where there is none.
CFStringRef CFStringGetNameOfEncoding(CFStringEncoding encoding);
CFStringRef CFStringConvertEncodingToIANACharSetName(CFStringEncoding encoding);
CFStringEncoding CFStringConvertIANACharSetNameToEncoding(CFStringRef theString);

// The encoding that holds the text in the fewest bytes, and the one it is quickest had in.
CFStringEncoding CFStringGetSmallestEncoding(CFStringRef theString);
CFStringEncoding CFStringGetFastestEncoding(CFStringRef theString);

// Bytes that `length` units take at most, without a terminator; kCFNotFound when that is more than
// a CFIndex can say.
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);

// --- Comparing and searching.

// Order by code points, a shorter text before its continuation. Case-insensitively each character
// is folded by itself; numerically, runs of ASCII digits count by value. WithOptions looks at that
// range of theString1 and all of theString2.
CFComparisonResult CFStringCompare(CFStringRef theString1, CFStringRef theString2,
                                   CFOptionFlags compareOptions);
CFComparisonResult CFStringCompareWithOptions(CFStringRef theString1, CFStringRef theString2,
                                              CFRange rangeToCompare, CFOptionFlags compareOptions);

// Where stringToFind is; {kCFNotFound, 0} when nowhere, and always for an empty stringToFind. The
// length found may differ from that of stringToFind (case folding, equivalent texts). WithOptions
// leaves *result untouched when it returns false; result may be NULL.
CFRange CFStringFind(CFStringRef theString, CFStringRef stringToFind, CFOptionFlags compareOptions);
Boolean CFStringFindWithOptions(CFStringRef theString, CFStringRef stringToFind,
                                CFRange rangeToSearch, CFOptionFlags searchOptions,
                                CFRange* result);

// All matches in a range, as CFRanges that CFArrayGetValueAtIndex points to; NULL when there is
// none.
CFArrayRef CFStringCreateArrayWithFindResults(CFAllocatorRef alloc, CFStringRef theString,
                                              CFStringRef stringToFind, CFRange rangeToSearch,
                                              CFOptionFlags compareOptions);

// Literal; false for an empty prefix or suffix.
Boolean CFStringHasPrefix(CFStringRef theString, CFStringRef prefix);
Boolean CFStringHasSuffix(CFStringRef theString, CFStringRef suffix);

// The characters around the unit at theIndex that belong together: surrogates, marks on a base.
CFRange CFStringGetRangeOfComposedCharactersAtIndex(CFStringRef theString, CFIndex theIndex);

// The lines that a range touches: where the first begins, where the last ends with its line end
// (CR, LF, CR LF, or one of Unicode's) and without it. Any of the three may be NULL.
void CFStringGetLineBounds(CFStringRef theString, CFRange range, CFIndex* lineBeginIndex,
                           CFIndex* lineEndIndex, CFIndex* contentsEndIndex);

// --- Splitting and joining.

// The pieces between the separators, empty ones included; one piece when there is no separator.
CFArrayRef CFStringCreateArrayBySeparatingStrings(CFAllocatorRef alloc, CFStringRef theString,
                                                  CFStringRef separatorString);

// The strings of theArray with separatorString between them.
CFStringRef CFStringCreateByCombiningStrings(CFAllocatorRef alloc, CFArrayRef theArray,
                                             CFStringRef separatorString);

// --- Editing. Calls on a string that is not mutable change nothing.

void CFStringAppend(CFMutableStringRef theString, CFStringRef appendedString);
void CFStringAppendCharacters(CFMutableStringRef theString, const UniChar* chars, CFIndex numChars);
void CFStringAppendPascalString(CFMutableStringRef theString, ConstStr255Param pStr,
                                CFStringEncoding encoding);
void CFStringAppendCString(CFMutableStringRef theString, const char* cStr,
                           CFStringEncoding encoding);
void CFStringAppendFormat(CFMutableStringRef theString, CFDictionaryRef formatOptions,
                          CFStringRef format, ...);
void CFStringAppendFormatAndArguments(CFMutableStringRef theString, CFDictionaryRef formatOptions,
                                      CFStringRef format, va_list arguments);
void CFStringInsert(CFMutableStringRef str, CFIndex idx, CFStringRef insertedStr);
void CFStringDelete(CFMutableStringRef theString, CFRange range);
void CFStringReplace(CFMutableStringRef theString, CFRange range, CFStringRef replacement);
void CFStringReplaceAll(CFMutableStringRef theString, CFStringRef replacement);

// Replaces every match in the range, none overlapping another and none found in replaced text;
// returns how many. Backwards, matches are taken from the end.
CFIndex CFStringFindAndReplace(CFMutableStringRef theString, CFStringRef stringToFind,
                               CFStringRef replacementString, CFRange rangeToSearch,
                               CFOptionFlags compareOptions);

// Cuts to `length`, or fills up to it with padString, taken from its unit indexIntoPad on.
void CFStringPad(CFMutableStringRef theString, CFStringRef padString, CFIndex length,
                 CFIndex indexIntoPad);

// Removes trimString from both ends as often as it is there; white space and line ends.
void CFStringTrim(CFMutableStringRef theString, CFStringRef trimString);
void CFStringTrimWhitespace(CFMutableStringRef theString);

// Case with full mappings (sharp s becomes SS), in the ways of a locale's language (Turkish has two
// letters i) or, with NULL, the same for every language.
void CFStringLowercase(CFMutableStringRef theString, CFLocaleRef locale);
void CFStringUppercase(CFMutableStringRef theString, CFLocaleRef locale);

// Capitals after anything that is neither a letter nor a mark or apostrophe: "file2name" becomes
// "File2Name".
void CFStringCapitalize(CFMutableStringRef theString, CFLocaleRef locale);

void CFStringNormalize(CFMutableStringRef theString, CFStringNormalizationForm theForm);

PLATFORM_DECLARATIONS_END

// Prepares reading the units of a range, which must lie inside the string; the string must stay and
// not change meanwhile.
static inline void CFStringInitInlineBuffer(CFStringRef str, CFStringInlineBuffer* buf,
                                            CFRange range) {
    buf->theString = str;
    buf->rangeToBuffer = range;
    buf->directBuffer = CFStringGetCharactersPtr(str);
    buf->bufferedRangeStart = buf->bufferedRangeEnd = 0;
}

// A unit by its place in the range; 0 outside it.
static inline UniChar CFStringGetCharacterFromInlineBuffer(CFStringInlineBuffer* buf, CFIndex idx) {
    if (idx < 0 || idx >= buf->rangeToBuffer.length) return 0;
    if (buf->directBuffer) return buf->directBuffer[buf->rangeToBuffer.location + idx];
    return CFStringGetCharacterAtIndex(buf->theString, buf->rangeToBuffer.location + idx);
}

#endif
