// Unicode strings in the encodings of scripts.
#ifndef CARBON_HITEXTUTILS_H
#define CARBON_HITEXTUTILS_H

#include <Carbon/MacTypes.h>
#include <Carbon/TextCommon.h>
#include <CoreFoundation/CFString.h>

PLATFORM_DECLARATIONS_BEGIN

// A string in the encoding that fits it, without length byte or terminator: up to inTextMaxLength
// bytes of whole characters. *outTextLength: the bytes written. *outEncoding (may be NULL): the
// encoding, which is MacRoman. Letters with separate marks are composed first. Returns
// kTECOutputBufferFullStatus when the rest did not fit, kTECUnmappableElementErr (and writes
// nothing) for a text that has a character MacRoman lacks, paramErr for NULL.
OSStatus GetTextAndEncodingFromCFString(CFStringRef inString, BytePtr outText,
                                        ByteCount inTextMaxLength, ByteCount* outTextLength,
                                        TextEncoding* outEncoding);

PLATFORM_DECLARATIONS_END

#endif
