// Unicode strings as values.
#pragma once

#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>

#include "vantor/foundation/Export.h"

// Holds one reference to an immutable string and always has one: what cannot be made is the empty
// string. Copies share the string; every operation that changes a text answers with a new one.
//
// Lengths and positions are UTF-16 units and start at 0. A `inMaxLength` is the most characters
// that an exported text may have; its buffer holds one byte more.
class VANTOR_EXPORT TCFString {
  public:
    TCFString();
    TCFString(const TCFString& inOther);
    TCFString& operator=(const TCFString& inOther);
    // Retains the string, which stays the caller's too; null gives the empty string.
    TCFString(CFStringRef inString);
    // Empty when the bytes are not valid in the encoding.
    TCFString(const char* inCString, CFStringEncoding inEncoding);
    TCFString(ConstStr255Param inString, CFStringEncoding inEncoding);
    // A moment, as the user's locale writes it.
    TCFString(CFAbsoluteTime inTime, CFDateFormatterStyle inDateStyle,
              CFDateFormatterStyle inTimeStyle);
    ~TCFString();

    // Takes over a reference that the caller owns.
    void Adopt(CFStringRef inString);

    static TCFString WithBytes(const UInt8* inBytes, CFIndex inCount, CFStringEncoding inEncoding,
                               Boolean inIsExternalRepresentation);
    static TCFString CFPrintf(CFStringRef inFormat, ...);

    CFStringRef StringRef() const { return mString; }  // lent
    CFStringRef Retain() const;                        // the caller's
    CFIndex Length() const { return CFStringGetLength(mString); }
    bool IsEmpty() const { return Length() == 0; }

    // The encoding of the application's own texts, asked for once.
    static CFStringEncoding DefaultEncoding();
    static CFStringRef EmptyCFString();

    // As bytes. The first two try the default encoding, then the system's, then cut the text, and
    // at last say that it cannot be displayed; they return `outText`. The others make one attempt,
    // leave an empty text when it fails, and say whether it succeeded.
    char* CString(SInt32 inMaxLength, char* outText) const;
    StringPtr PString(StringPtr outText, SInt32 inMaxLength) const;
    bool CStringWithEncoding(SInt32 inMaxLength, char* outText, CFStringEncoding inEncoding) const;
    bool PStringWithEncoding(StringPtr outText, SInt32 inMaxLength,
                             CFStringEncoding inEncoding) const;
    bool UTF8(SInt32 inMaxLength, char* outText) const;
    // The bytes that the text takes in UTF-8, as far as its first zero.
    SInt32 UTF8Length() const;

    // As UTF-16 units: the first `inCount`, which must be there; the first 255 at most.
    void Unicode(SInt32 inCount, UniChar* outUnits) const;
    void HFSUniStr(HFSUniStr255& outName) const;

    // Searching; {-1, 0} and {-1, -1} are nowhere.
    CFRange Find(const TCFString& inText, CFOptionFlags inOptions) const;
    CFRange FindInRange(CFRange inRange, const TCFString& inText, CFOptionFlags inOptions) const;
    bool HasPrefix(const TCFString& inPrefix, bool inIgnoreCase) const;
    bool HasSuffix(const TCFString& inSuffix) const;  // whatever the case
    // A range cut to the text; one that begins before it grows by what it lacks there.
    CFRange CheckRange(const CFRange& inRange) const;

    // Editing. Ranges are cut to the text; a negative one changes nothing.
    TCFString Replace(const CFRange& inRange, const TCFString& inWith) const;
    TCFString ReplaceSubstring(const TCFString& inFind, const TCFString& inWith,
                               CFOptionFlags inOptions) const;  // the first
    TCFString FindAndReplace(const TCFString& inFind, const TCFString& inWith, CFRange inRange,
                             CFOptionFlags inOptions) const;  // all
    // Empty when the range does not lie inside the text.
    TCFString Substring(CFIndex inLocation, CFIndex inLength) const;
    TCFString Capitalize() const;
    TCFString Uppercase() const;
    TCFString Lowercase() const;
    TCFString Normalize(CFStringNormalizationForm inForm) const;

    // Comparing: by code points unless the options say otherwise; or as a file browser orders
    // names, where `inStrict` false takes names for equal that differ only in case and the like.
    // Names are compared by their first 255 units.
    CFComparisonResult CompareTo(const TCFString& inOther, CFOptionFlags inOptions) const;
    bool operator!=(const TCFString& inOther) const;
    SInt32 FinderCompareTo(const TCFString& inOther, Boolean inStrict) const;

    // The number that the first 255 characters begin with; `outOk` (may be null) tells whether they
    // are all of it. Numbers too large are the largest. A double has no fraction.
    SInt32 ToLong(SInt32 inBase, Boolean* outOk) const;
    SInt64 ToLongLong(SInt32 inBase, Boolean* outOk) const;
    double ToDouble(Boolean* outOk) const;

    // File names. A suffix is the last period and at most 11 characters behind it.
    TCFString Suffix() const;
    TCFString RemoveSuffix() const;
    // Without colons, and cut in front of the suffix to a length (0 or less: any).
    TCFString HFSName(SInt32 inMaxLength) const;

    // Puts texts in the place of the first ^0 to ^3; an empty one leaves its mark. A text put in
    // may hold a later mark.
    TCFString PlugParams(const TCFString& inParam0, const TCFString& inParam1,
                         const TCFString& inParam2, const TCFString& inParam3) const;

    // A string of a resource, read once: entry `inIndex` of a list (missing ones are empty, as is
    // entry 0) or, below 0, the one in 'STR '. Throws 'nilP' when there is no such 'STR '.
    static TCFString Res(SInt16 inResID, SInt16 inIndex);

    static const TCFString Empty;
    static const unsigned char kCannotDisplayString[];
    static const char kCannotDisplayCString[];
    static const TCFString kCannotDisplayCFString;

  private:
    void EnsureNonNullRef();

    CFStringRef mString;
};

VANTOR_EXPORT TCFString operator+(const TCFString& inLeft, const TCFString& inRight);

// The order of two names, below 0, 0 or above 0: digits by their value, width and composition of
// letters set aside. Null comes first. With `inNeedEquivalence` names that differ only in what is
// set aside, case too unless `inCaseSensitive`, are equal.
VANTOR_EXPORT SInt32 FinderCompare(UniCharCount inLength1, const UniChar* inChars1,
                                   UniCharCount inLength2, const UniChar* inChars2,
                                   bool inCaseSensitive, bool inNeedEquivalence);
