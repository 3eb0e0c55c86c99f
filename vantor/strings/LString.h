// Pascal strings as objects.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

class LStr255;

// Works on a Pascal string of a stated capacity: a length byte, then the text in MacRoman. What
// does not fit is cut off without a word. Positions start at 1; a bad one is moved to the nearest
// end, or the answer is 0 or empty. Sources may be null (nothing) and may overlap the string.
class VANTOR_EXPORT LString {
  public:
    // The order of two texts: negative, 0 for equal, positive. Lengths are bytes.
    using CompareFunc = SInt16 (*)(const void* inFirst, const void* inSecond, UInt8 inFirstLength,
                                   UInt8 inSecondLength);

    virtual ~LString() = 0;

    // Reading.
    operator ConstStringPtr() const { return mStringPtr; }
    operator StringPtr() { return mStringPtr; }
    StringPtr TextPtr() const { return mStringPtr + 1; }
    UInt8 Length() const { return mStringPtr[0]; }
    SInt16 ShortLength() const { return mStringPtr[0]; }
    // The byte at an index, which is not checked; 0 is the length byte.
    unsigned char& operator[](SInt32 inIndex) { return mStringPtr[inIndex]; }
    unsigned char operator[](SInt32 inIndex) const { return mStringPtr[inIndex]; }
    // A substring.
    LStr255 operator()(UInt8 inStart, UInt8 inCount = 255) const;

    // The number that the text stands for: as StringToNum, and in any usual form of a decimal
    // number (NaN for none).
    operator SInt32() const;
    operator double() const;
    operator long double() const;
    // The first four characters as a code; zeros in front of fewer.
    operator UInt32() const;

    CompareFunc GetCompareFunc() const { return mCompareFunc; }

    // Replacing the whole text.
    LString& Assign(const void* inText, UInt8 inLength);
    LString& Assign(ConstStr255Param inString);
    LString& Assign(const char* inCString);
    LString& Assign(unsigned char inCharacter);
    LString& Assign(char inCharacter);
    // A substring; `inStart` is taken as it is, and 0 means the length byte.
    LString& Assign(const LString& inSource, UInt8 inStart = 1, UInt8 inCount = 255);
    LString& Assign(Handle inText);  // the handle's bytes
    LString& Assign(SInt32 inNumber);
    LString& Assign(UInt32 inCode);  // four characters
    // With an index over 0 that string of the list 'STR#' `inResID`, else the 'STR ' resource
    // `inResID`. Empty when there is none.
    LString& Assign(SInt16 inResID, SInt16 inIndex);

    // Numbers: with `inDigits` digits in all (FLOATDECIMAL) or behind the point (FIXEDDECIMAL).
    LString& Assign(double inNumber, char inStyle, SInt16 inDigits);
    LString& Assign(long double inNumber, char inStyle, SInt16 inDigits);
    // Numbers in a format of NumberFormatting.h, with the system's symbols or those given. The
    // storage must hold 256 bytes. `outResult` gets the FormatResultType; it may be null.
    LString& Assign(long double inNumber, ConstStr255Param inFormat, SInt8* outResult = nullptr);
    // The format may be written with the symbols of a 'NoPt' resource; throws when that is missing.
    LString& Assign(long double inNumber, ConstStr255Param inFormat, SInt16 inPartsResID,
                    SInt8* outResult);
    LString& Assign(long double inNumber, const NumFormatString& inFormat,
                    const NumberParts& inParts, SInt8* outResult = nullptr);

    LString& operator=(const LString& inSource) { return Assign(inSource); }
    LString& operator=(ConstStr255Param inString) { return Assign(inString); }
    LString& operator=(const char* inCString) { return Assign(inCString); }
    LString& operator=(unsigned char inCharacter) { return Assign(inCharacter); }
    LString& operator=(char inCharacter) { return Assign(inCharacter); }
    LString& operator=(Handle inText) { return Assign(inText); }
    LString& operator=(SInt32 inNumber) { return Assign(inNumber); }
    LString& operator=(UInt32 inCode) { return Assign(inCode); }

    // Appending.
    LString& Append(const void* inText, UInt8 inLength);
    LString& Append(const LString& inString);
    LString& Append(ConstStr255Param inString);
    LString& Append(unsigned char inCharacter);
    LString& Append(char inCharacter);
    LString& Append(SInt32 inNumber);
    LString& operator+=(const LString& inString) { return Append(inString); }
    LString& operator+=(ConstStr255Param inString) { return Append(inString); }
    LString& operator+=(unsigned char inCharacter) { return Append(inCharacter); }
    LString& operator+=(char inCharacter) { return Append(inCharacter); }
    LString& operator+=(SInt32 inNumber) { return Append(inNumber); }

    // Editing.
    LString& Insert(const void* inText, UInt8 inLength, UInt8 inAt);
    LString& Remove(UInt8 inStart, UInt8 inCount);
    LString& Replace(UInt8 inStart, UInt8 inCount, const void* inText, UInt8 inLength);

    // Searching, with the compare function; 0 for not found. Find takes the first place at or
    // behind `inStartPos`, ReverseFind the last at or before it.
    UInt8 Find(const void* inText, UInt8 inLength, UInt8 inStartPos = 1) const;
    UInt8 ReverseFind(const void* inText, UInt8 inLength, UInt8 inStartPos = 255) const;
    bool BeginsWith(const void* inText, UInt8 inLength) const;
    bool EndsWith(const void* inText, UInt8 inLength) const;
    // The same for this string in a buffer of any length.
    UInt32 FindWithin(const void* inBuffer, UInt32 inBufferLength, UInt32 inStartPos = 1) const;
    UInt32 ReverseFindWithin(const void* inBuffer, UInt32 inBufferLength,
                             UInt32 inStartPos = 0xFFFFFFFF) const;

    // Compare functions: by bytes; as the system orders texts; the same without regard to case.
    static SInt16 CompareBytes(const void* inFirst, const void* inSecond, UInt8 inFirstLength,
                               UInt8 inSecondLength);
    static SInt16 ToolboxCompareText(const void* inFirst, const void* inSecond, UInt8 inFirstLength,
                                     UInt8 inSecondLength);
    static SInt16 CompareIgnoringCase(const void* inFirst, const void* inSecond,
                                      UInt8 inFirstLength, UInt8 inSecondLength);
    // What strings are constructed with.
    static CompareFunc sDefaultCompareFunc;

    // Plain Pascal strings. Sizes are those of the whole destination, length byte included.
    static UInt8 CStringLength(const char* inCString);  // never more than 255
    static void CopyPStr(ConstStr255Param inSource, StringPtr outString, SInt16 inSize = 256);
    static void AppendPStr(StringPtr ioString, ConstStr255Param inSource, SInt16 inSize = 256);
    // In place; null comes back as null.
    static StringPtr CToPStr(char* ioString);
    static char* PToCStr(StringPtr ioString);
    static void FourCharCodeToPStr(UInt32 inCode, StringPtr outString);
    // Reads four bytes behind the length byte, whatever that says.
    static void PStrToFourCharCode(ConstStr255Param inString, UInt32& outCode);

    // Numbers and formats; the results are FormatResultTypes.
    static void Num2Dec2Str(LString* outString, double inNumber, char inStyle, SInt16 inDigits);
    static long double StringToLongDouble(ConstStr255Param inText, ConstStr255Param inFormat,
                                          SInt8* outResult);
    static long double StringToLongDouble(ConstStr255Param inText, const NumFormatString& inFormat,
                                          const NumberParts& inParts, SInt8* outResult);
    // Reads a format with the system's symbols.
    static SInt8 FetchFloatFormat(ConstStr255Param inFormat, NumFormatString& outFormat,
                                  NumberParts& outParts);
    // Reads a format that is written with other symbols, for use with the system's.
    static SInt8 FetchFloatFormat(ConstStr255Param inFormat, const NumberParts& inParts,
                                  NumFormatString& outFormat, NumberParts& outParts);
    // Throws 'nilP' when the system has none.
    static void GetSystemNumberParts(NumberParts& outParts);

  protected:
    LString(SInt16 inCapacity, StringPtr inStorage);
    LString(SInt16 inCapacity, StringPtr inStorage, CompareFunc inCompareFunc);
    LString(const LString& inOther) = default;  // the same storage

    LString& LoadFromPtr(const void* inText, UInt8 inLength);
    LString& LoadFromStringPtr(ConstStr255Param inString);
    LString& LoadFromSTRResource(SInt16 inResID);
    LString& LoadFromSTRListResource(SInt16 inResID, SInt16 inIndex);

    StringPtr mStringPtr;      // length byte first; not owned
    CompareFunc mCompareFunc;  // of the searches
    SInt16 mCapacity;          // bytes, length byte included

  private:
    SInt32 Room() const;
    bool Matches(const void* inText, UInt8 inLength, SInt32 inPosition) const;
    UInt8 FindBytes(const void* inText, UInt8 inLength, SInt32 inFirst) const;
    bool MatchesWithin(const void* inBuffer, UInt32 inOffset) const;
};

// A string with its own room for 255 characters.
class VANTOR_EXPORT LStr255 : public LString {
  public:
    LStr255();
    // Copies have the source's compare function too.
    LStr255(const LStr255& inOther);
    LStr255(const LString& inOther);
    LStr255(ConstStr255Param inString);
    LStr255(const char* inCString);
    explicit LStr255(unsigned char inCharacter);
    explicit LStr255(char inCharacter);
    LStr255(const void* inText, UInt8 inLength);
    explicit LStr255(Handle inText);
    LStr255(SInt16 inResID, SInt16 inIndex);
    explicit LStr255(SInt32 inNumber);
    explicit LStr255(SInt16 inNumber);
    explicit LStr255(UInt32 inCode);
    LStr255(long double inNumber, ConstStr255Param inFormat);
    LStr255(long double inNumber, const NumFormatString& inFormat, const NumberParts& inParts);
    LStr255(double inNumber, char inStyle, SInt16 inDigits);
    LStr255(long double inNumber, char inStyle, SInt16 inDigits);
    ~LStr255() override;

    LStr255& operator=(const LStr255& inOther);
    using LString::operator=;

  private:
    Str255 mString;
};

// Edits somebody else's Pascal string, which must outlive it.
class VANTOR_EXPORT LStringRef : public LString {
  public:
    LStringRef(SInt16 inCapacity, StringPtr inStorage);
    LStringRef(const LStringRef& inOther);
    ~LStringRef() override;

    // From another reference: refers to its string from now on, and no text is copied.
    LStringRef& operator=(const LStringRef& inOther);
    using LString::operator=;
    void SetStringRef(SInt16 inCapacity, StringPtr inStorage);
};

// Sums, cut at 255 characters, with the compare function of an object on the left.
VANTOR_EXPORT LStr255 operator+(const LString& inLeft, const LString& inRight);
VANTOR_EXPORT LStr255 operator+(const LString& inLeft, ConstStringPtr inRight);
VANTOR_EXPORT LStr255 operator+(const LString& inLeft, StringPtr inRight);
VANTOR_EXPORT LStr255 operator+(const LString& inLeft, unsigned char inRight);
VANTOR_EXPORT LStr255 operator+(const LString& inLeft, char inRight);
VANTOR_EXPORT LStr255 operator+(ConstStringPtr inLeft, const LString& inRight);
VANTOR_EXPORT LStr255 operator+(StringPtr inLeft, const LString& inRight);
VANTOR_EXPORT LStr255 operator+(unsigned char inLeft, const LString& inRight);
VANTOR_EXPORT LStr255 operator+(char inLeft, const LString& inRight);
