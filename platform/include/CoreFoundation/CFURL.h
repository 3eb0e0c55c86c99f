// Locations, mostly of files: "file://localhost/Applications/Calculator.app/".
//
// The URL of a folder ends in '/'. A relative location keeps the one it is relative to as its base.
// Paths are decoded and UTF-8 where bytes are meant; inside a URL string what is not plain ASCII is
// percent-escaped.
#ifndef COREFOUNDATION_CFURL_H
#define COREFOUNDATION_CFURL_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

typedef const struct __CFURL* CFURLRef;
struct FSRef;

// '/' between the names; ':' with the volume's name first, ':' and '/' exchanged inside names.
typedef SInt32 CFURLPathStyle;
enum { kCFURLPOSIXPathStyle = 0, kCFURLHFSPathStyle = 1 };

PLATFORM_DECLARATIONS_BEGIN

CFTypeID CFURLGetTypeID(void);

// A URL from its string, which must be valid: ASCII without spaces, quotes or other characters that
// have to be escaped, and every '%' before two hexadecimal digits; else NULL. An empty string gives
// NULL without a base. baseURL may be NULL and is retained.
CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef URLString, CFURLRef baseURL);

// The URL of a file or folder, which need not exist. A relative path is kept relative, with the
// working directory (or baseURL) as base. isDirectory adds the '/' at the end. NULL for an empty
// path, an unknown style, or a path that is not valid UTF-8.
CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef filePath,
                                       CFURLPathStyle pathStyle, Boolean isDirectory);
CFURLRef CFURLCreateWithFileSystemPathRelativeToBase(CFAllocatorRef allocator, CFStringRef filePath,
                                                     CFURLPathStyle pathStyle, Boolean isDirectory,
                                                     CFURLRef baseURL);
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* buffer,
                                                 CFIndex bufLen, Boolean isDirectory);

// The URL of an existing file or folder; NULL when there is none.
CFURLRef CFURLCreateFromFSRef(CFAllocatorRef allocator, const struct FSRef* fsRef);

// Finds the file or folder; false when it does not exist or this is not the URL of a file.
Boolean CFURLGetFSRef(CFURLRef url, struct FSRef* fsRef);

// The path, not resolved against the base, without a '/' at the end unless it is all there is; NULL
// for a URL without a path or, in HFS style, when no volume holds it.
CFStringRef CFURLCopyFileSystemPath(CFURLRef anURL, CFURLPathStyle pathStyle);

// The path as UTF-8 bytes and a zero; false when it takes more than maxBufLen or there is none.
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex maxBufLen);

CFStringRef CFURLGetString(CFURLRef anURL);  // lent; relative to the base if there is one
CFURLRef CFURLGetBaseURL(CFURLRef anURL);    // lent; NULL for an absolute URL
CFURLRef CFURLCopyAbsoluteURL(CFURLRef relativeURL);

// "file"; NULL when there is none.
CFStringRef CFURLCopyScheme(CFURLRef anURL);

// The escaped path; NULL when there is none.
CFStringRef CFURLCopyPath(CFURLRef anURL);
Boolean CFURLHasDirectoryPath(CFURLRef anURL);

// The last name of the path, decoded, without '/' ("/" for the root); what follows its last period,
// NULL when it has none.
CFStringRef CFURLCopyLastPathComponent(CFURLRef url);
CFStringRef CFURLCopyPathExtension(CFURLRef url);

// The URL of something inside a folder; of the folder around it; with or without an extension.
CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef allocator, CFURLRef url,
                                               CFStringRef pathComponent, Boolean isDirectory);
CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef allocator, CFURLRef url);
CFURLRef CFURLCreateCopyAppendingPathExtension(CFAllocatorRef allocator, CFURLRef url,
                                               CFStringRef extension);
CFURLRef CFURLCreateCopyDeletingPathExtension(CFAllocatorRef allocator, CFURLRef url);

// Decodes UTF-8 escapes, except those of the characters in charactersToLeaveEscaped ("" decodes
// all, NULL none); NULL for a '%' without two digits or bytes that are not UTF-8.
CFStringRef CFURLCreateStringByReplacingPercentEscapes(CFAllocatorRef allocator,
                                                       CFStringRef originalString,
                                                       CFStringRef charactersToLeaveEscaped);

// Escapes what a URL cannot hold, and legalURLCharactersToBeEscaped, but not charactersToLeave-
// Unescaped; both may be NULL. NULL when the text cannot be said in the encoding.
CFStringRef CFURLCreateStringByAddingPercentEscapes(CFAllocatorRef allocator,
                                                    CFStringRef originalString,
                                                    CFStringRef charactersToLeaveUnescaped,
                                                    CFStringRef legalURLCharactersToBeEscaped,
                                                    CFStringEncoding encoding);

PLATFORM_DECLARATIONS_END

#endif
