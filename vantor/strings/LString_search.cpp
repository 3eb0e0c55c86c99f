// Searching and comparing.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "vantor/strings/LString.h"

bool LString::Matches(const void* inText, UInt8 inLength, SInt32 inPosition) const {
    return mCompareFunc(mStringPtr + inPosition, inText, inLength, inLength) == 0;
}

// What comparing bytes at every place would find, in one search.
UInt8 LString::FindBytes(const void* inText, UInt8 inLength, SInt32 inFirst) const {
    const std::string_view text(reinterpret_cast<const char*>(mStringPtr), Length() + size_t{1});
    const size_t place = text.find(static_cast<const char*>(inText), size_t(inFirst), inLength);
    return place == std::string_view::npos ? UInt8(0) : UInt8(place);
}

UInt8 LString::Find(const void* inText, UInt8 inLength, UInt8 inStartPos) const {
    const SInt32 first = std::max<SInt32>(inStartPos, 1), last = Length() - inLength + 1;
    if (mCompareFunc == CompareBytes && first <= last) return FindBytes(inText, inLength, first);
    for (SInt32 position = first; position <= last; ++position)
        if (Matches(inText, inLength, position)) return UInt8(position);
    return 0;
}

UInt8 LString::ReverseFind(const void* inText, UInt8 inLength, UInt8 inStartPos) const {
    const SInt32 last = Length() - inLength + 1;
    for (SInt32 position = std::min<SInt32>(inStartPos, last); position >= 1; --position)
        if (Matches(inText, inLength, position)) return UInt8(position);
    return 0;
}

bool LString::BeginsWith(const void* inText, UInt8 inLength) const {
    return inLength <= Length() && Matches(inText, inLength, 1);
}

bool LString::EndsWith(const void* inText, UInt8 inLength) const {
    return inLength <= Length() && Matches(inText, inLength, Length() - inLength + 1);
}

bool LString::MatchesWithin(const void* inBuffer, UInt32 inOffset) const {
    const auto* const place = static_cast<const UInt8*>(inBuffer) + inOffset;
    return mCompareFunc(TextPtr(), place, Length(), Length()) == 0;
}

UInt32 LString::FindWithin(const void* inBuffer, UInt32 inBufferLength, UInt32 inStartPos) const {
    if (inStartPos == 0 || inBufferLength < Length()) return 0;
    const UInt32 last = inBufferLength - Length();
    for (UInt32 offset = inStartPos - 1; offset <= last; ++offset)
        if (MatchesWithin(inBuffer, offset)) return offset + 1;
    return 0;
}

UInt32 LString::ReverseFindWithin(const void* inBuffer, UInt32 inBufferLength,
                                  UInt32 inStartPos) const {
    if (inStartPos == 0 || inBufferLength < Length()) return 0;
    const UInt32 last = std::min(inStartPos - 1, inBufferLength - Length());
    for (UInt32 position = last + 1; position >= 1; --position)
        if (MatchesWithin(inBuffer, position - 1)) return position;
    return 0;
}

SInt16 LString::CompareBytes(const void* inFirst, const void* inSecond, UInt8 inFirstLength,
                             UInt8 inSecondLength) {
    const int order = std::memcmp(inFirst, inSecond, std::min(inFirstLength, inSecondLength));
    const int sign = order ? order : inFirstLength - inSecondLength;
    return SInt16(sign < 0 ? -1 : sign > 0);
}

SInt16 LString::ToolboxCompareText(const void* inFirst, const void* inSecond, UInt8 inFirstLength,
                                   UInt8 inSecondLength) {
    return CompareText(inFirst, inSecond, inFirstLength, inSecondLength, nullptr);
}

SInt16 LString::CompareIgnoringCase(const void* inFirst, const void* inSecond, UInt8 inFirstLength,
                                    UInt8 inSecondLength) {
    LStr255 first(inFirst, inFirstLength), second(inSecond, inSecondLength);
    for (LStr255* string : {&first, &second})
        UppercaseText(reinterpret_cast<Ptr>(string->TextPtr()), string->ShortLength(),
                      smSystemScript);
    return ToolboxCompareText(first.TextPtr(), second.TextPtr(), inFirstLength, inSecondLength);
}
