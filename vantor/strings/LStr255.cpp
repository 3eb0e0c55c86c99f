// Constructing strings with storage of their own, references to strings, and sums.
#include "vantor/strings/LString.h"

namespace {

constexpr SInt16 kCapacity = sizeof(Str255);

template <typename Left, typename Right>
LStr255 Sum(const Left& inLeft, const Right& inRight) {
    LStr255 sum(inLeft);
    sum.Append(inRight);
    return sum;
}

}  // namespace

// The storage is handed to the base before it begins to live, and written only afterwards.
LStr255::LStr255() : LString(kCapacity, mString) {
    mString[0] = 0;
}

LStr255::LStr255(const LStr255& inOther) : LStr255(static_cast<const LString&>(inOther)) {}

LStr255::LStr255(const LString& inOther) : LString(kCapacity, mString, inOther.GetCompareFunc()) {
    Assign(inOther);
}

LStr255::LStr255(ConstStr255Param inString) : LStr255() {
    Assign(inString);
}

LStr255::LStr255(const char* inCString) : LStr255() {
    Assign(inCString);
}

LStr255::LStr255(unsigned char inCharacter) : LStr255() {
    Assign(inCharacter);
}

LStr255::LStr255(char inCharacter) : LStr255() {
    Assign(inCharacter);
}

LStr255::LStr255(const void* inText, UInt8 inLength) : LStr255() {
    Assign(inText, inLength);
}

LStr255::LStr255(Handle inText) : LStr255() {
    Assign(inText);
}

LStr255::LStr255(SInt16 inResID, SInt16 inIndex) : LStr255() {
    Assign(inResID, inIndex);
}

LStr255::LStr255(SInt32 inNumber) : LStr255() {
    Assign(inNumber);
}

LStr255::LStr255(SInt16 inNumber) : LStr255(SInt32{inNumber}) {}

LStr255::LStr255(UInt32 inCode) : LStr255() {
    Assign(inCode);
}

LStr255::LStr255(long double inNumber, ConstStr255Param inFormat) : LStr255() {
    Assign(inNumber, inFormat);
}

LStr255::LStr255(long double inNumber, const NumFormatString& inFormat, const NumberParts& inParts)
    : LStr255() {
    Assign(inNumber, inFormat, inParts);
}

LStr255::LStr255(double inNumber, char inStyle, SInt16 inDigits) : LStr255() {
    Assign(inNumber, inStyle, inDigits);
}

LStr255::LStr255(long double inNumber, char inStyle, SInt16 inDigits) : LStr255() {
    Assign(inNumber, inStyle, inDigits);
}

LStr255::~LStr255() = default;

LStr255& LStr255::operator=(const LStr255& inOther) {
    Assign(inOther);
    return *this;
}

LStringRef::LStringRef(SInt16 inCapacity, StringPtr inStorage) : LString(inCapacity, inStorage) {}

LStringRef::LStringRef(const LStringRef& inOther) = default;

LStringRef::~LStringRef() = default;

LStringRef& LStringRef::operator=(const LStringRef& inOther) {
    mStringPtr = inOther.mStringPtr;
    mCompareFunc = inOther.mCompareFunc;
    mCapacity = inOther.mCapacity;
    return *this;
}

void LStringRef::SetStringRef(SInt16 inCapacity, StringPtr inStorage) {
    mCapacity = inCapacity;
    mStringPtr = inStorage;
}

LStr255 operator+(const LString& inLeft, const LString& inRight) {
    return Sum(inLeft, inRight);
}

LStr255 operator+(const LString& inLeft, ConstStringPtr inRight) {
    return Sum(inLeft, inRight);
}

LStr255 operator+(const LString& inLeft, StringPtr inRight) {
    return Sum(inLeft, ConstStringPtr{inRight});
}

LStr255 operator+(const LString& inLeft, unsigned char inRight) {
    return Sum(inLeft, inRight);
}

LStr255 operator+(const LString& inLeft, char inRight) {
    return Sum(inLeft, inRight);
}

LStr255 operator+(ConstStringPtr inLeft, const LString& inRight) {
    return Sum(inLeft, inRight);
}

LStr255 operator+(StringPtr inLeft, const LString& inRight) {
    return Sum(ConstStringPtr{inLeft}, inRight);
}

LStr255 operator+(unsigned char inLeft, const LString& inRight) {
    return Sum(inLeft, inRight);
}

LStr255 operator+(char inLeft, const LString& inRight) {
    return Sum(inLeft, inRight);
}
