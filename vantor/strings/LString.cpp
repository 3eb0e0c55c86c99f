// Assigning, appending and editing.
#include "vantor/strings/LString.h"

#include <algorithm>
#include <cstring>

#include "vantor/foundation/BigEndian.h"

namespace {

constexpr SInt32 kMostCharacters = 255;

// The bytes of a source that may be part of the string that it goes into.
class TextCopy {
  public:
    TextCopy(const void* inText, SInt32 inLength) {
        if (inLength > 0) std::memcpy(mBytes, inText, size_t(inLength));
    }
    operator const UInt8*() const { return mBytes; }

  private:
    UInt8 mBytes[kMostCharacters];
};

}  // namespace

LString::CompareFunc LString::sDefaultCompareFunc = LString::ToolboxCompareText;

LString::LString(SInt16 inCapacity, StringPtr inStorage)
    : LString(inCapacity, inStorage, sDefaultCompareFunc) {}

LString::LString(SInt16 inCapacity, StringPtr inStorage, CompareFunc inCompareFunc)
    : mStringPtr(inStorage), mCompareFunc(inCompareFunc), mCapacity(inCapacity) {}

LString::~LString() = default;

// How many characters still fit.
SInt32 LString::Room() const {
    return std::max(std::min<SInt32>(mCapacity - 1, kMostCharacters) - Length(), 0);
}

LString& LString::LoadFromPtr(const void* inText, UInt8 inLength) {
    const SInt32 length = std::clamp<SInt32>(mCapacity - 1, 0, inText ? inLength : 0);
    if (length > 0) std::memmove(TextPtr(), inText, size_t(length));
    mStringPtr[0] = UInt8(length);
    return *this;
}

LString& LString::LoadFromStringPtr(ConstStr255Param inString) {
    return inString ? LoadFromPtr(inString + 1, inString[0]) : LoadFromPtr(nullptr, 0);
}

LString& LString::Assign(const void* inText, UInt8 inLength) {
    return LoadFromPtr(inText, inLength);
}

LString& LString::Assign(ConstStr255Param inString) {
    return LoadFromStringPtr(inString);
}

LString& LString::Assign(const char* inCString) {
    return LoadFromPtr(inCString, CStringLength(inCString));
}

// Kept: one character is stored whatever the capacity says.
LString& LString::Assign(unsigned char inCharacter) {
    mStringPtr[0] = 1;
    mStringPtr[1] = inCharacter;
    return *this;
}

LString& LString::Assign(char inCharacter) {
    return Assign(static_cast<unsigned char>(inCharacter));
}

LString& LString::Assign(const LString& inSource, UInt8 inStart, UInt8 inCount) {
    const SInt32 length = inSource.Length();
    if (inStart > length) return LoadFromPtr(nullptr, 0);
    // Kept: a start of 0 is not moved, so the length byte comes first.
    const SInt32 count = std::min<SInt32>(inCount, length + 1 - inStart);
    return LoadFromPtr(inSource.mStringPtr + inStart, UInt8(count));
}

LString& LString::Assign(Handle inText) {
    if (inText == nullptr) return LoadFromPtr(nullptr, 0);
    return LoadFromPtr(*inText,
                       UInt8(std::clamp<SInt32>(GetHandleSize(inText), 0, kMostCharacters)));
}

LString& LString::Assign(SInt32 inNumber) {
    Str255 text;
    NumToString(inNumber, text);
    return LoadFromStringPtr(text);
}

LString& LString::Assign(UInt32 inCode) {
    Str255 text;
    FourCharCodeToPStr(inCode, text);
    return LoadFromStringPtr(text);
}

LString& LString::Append(const void* inText, UInt8 inLength) {
    const StringPtr string = mStringPtr;
    const SInt32 used = string[0];
    const SInt32 length = std::min<SInt32>(inText ? inLength : 0, Room());
    if (length > 0) std::memmove(string + 1 + used, inText, size_t(length));
    string[0] = UInt8(used + length);
    return *this;
}

LString& LString::Append(const LString& inString) {
    return Append(inString.TextPtr(), inString.Length());
}

LString& LString::Append(ConstStr255Param inString) {
    return inString ? Append(inString + 1, inString[0]) : *this;
}

LString& LString::Append(unsigned char inCharacter) {
    return Append(&inCharacter, 1);
}

LString& LString::Append(char inCharacter) {
    return Append(&inCharacter, 1);
}

LString& LString::Append(SInt32 inNumber) {
    Str255 text;
    NumToString(inNumber, text);
    return Append(ConstStr255Param(text));
}

LString& LString::Insert(const void* inText, UInt8 inLength, UInt8 inAt) {
    const SInt32 at = std::clamp<SInt32>(inAt, 1, Length() + 1);
    const SInt32 length = std::min<SInt32>(inText ? inLength : 0, Room());
    const TextCopy text(inText, length);
    std::memmove(mStringPtr + at + length, mStringPtr + at, size_t(Length() + 1 - at));
    std::copy_n(static_cast<const UInt8*>(text), length, mStringPtr + at);
    mStringPtr[0] = UInt8(Length() + length);
    return *this;
}

LString& LString::Remove(UInt8 inStart, UInt8 inCount) {
    if (inStart > Length()) return *this;
    const SInt32 start = std::max<SInt32>(inStart, 1);
    const SInt32 count = std::clamp<SInt32>(Length() + 1 - start, 0, inCount);
    const SInt32 tail = Length() + 1 - start - count;
    std::memmove(mStringPtr + start, mStringPtr + start + count, size_t(tail));
    mStringPtr[0] = UInt8(Length() - count);
    return *this;
}

LString& LString::Replace(UInt8 inStart, UInt8 inCount, const void* inText, UInt8 inLength) {
    const TextCopy text(inText, inText ? inLength : 0);
    Remove(inStart, inCount);
    return Insert(text, inText ? inLength : UInt8(0), inStart);
}

LStr255 LString::operator()(UInt8 inStart, UInt8 inCount) const {
    LStr255 part;
    part.Assign(*this, std::max<UInt8>(inStart, 1), inCount);
    return part;
}
