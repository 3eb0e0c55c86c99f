// Owns the conversion of values for replies.
#include "handlers/Values.h"

#include <algorithm>
#include <string_view>

#include "vantor/appleevents/UExtractFromAEDesc.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

constexpr size_t kLongestPascalString = 255;

void MakeFrom(DescType inType, const void* inData, size_t inSize, StAEDescriptor& outDesc) {
    outDesc.Dispose();
    ThrowIfError(AECreateDesc(inType, inData, Size(inSize), outDesc));
}

bool IsText(DescType inType) {
    return inType == typeChar || inType == typePString || inType == typeCString;
}

// One character of UTF-8 as MacRoman, or a question mark.
std::string MacRomanCharacter(std::string_view inCharacter) {
    StAEDescriptor text;
    const OSErr err =
        AECoercePtr(typeUTF8Text, inCharacter.data(), Size(inCharacter.size()), typeChar, text);
    return err == noErr ? BytesOf(text) : "?";
}

void MakeMacRoman(const std::string& inUtf8, DescType inType, StAEDescriptor& outDesc) {
    std::string text = MacRomanOf(inUtf8);
    if (inType == typePString) text.resize(std::min(text.size(), kLongestPascalString));
    MakeFrom(typeChar, text.data(), text.size(), outDesc);
}

}  // namespace

void MakeBoolean(bool inValue, StAEDescriptor& outDesc) {
    outDesc.Assign(Boolean(inValue));
}

void MakeNumber(SInt32 inValue, StAEDescriptor& outDesc) {
    outDesc.Assign(inValue);
}

void MakeBigNumber(UInt64 inValue, StAEDescriptor& outDesc) {
    const UInt64 value = EndianU64_NtoB(inValue);
    MakeFrom(typeSInt64, &value, sizeof value, outDesc);
}

void MakeCode(DescType inType, OSType inValue, StAEDescriptor& outDesc) {
    const UInt32 value = EndianU32_NtoB(inValue);
    MakeFrom(inType, &value, sizeof value, outDesc);
}

void MakeText(const std::string& inUtf8, StAEDescriptor& outDesc) {
    MakeFrom(typeUTF8Text, inUtf8.data(), inUtf8.size(), outDesc);
}

void MakeTextList(const std::vector<std::string>& inUtf8, StAEDescriptor& outDesc) {
    outDesc.Dispose();
    ThrowIfError(AECreateList(nullptr, 0, false, outDesc));
    for (const auto& text : inUtf8)
        ThrowIfError(AEPutPtr(outDesc, 0, typeUTF8Text, text.data(), Size(text.size())));
}

std::string MacRomanOf(const std::string& inUtf8) {
    StAEDescriptor whole;
    if (AECoercePtr(typeUTF8Text, inUtf8.data(), Size(inUtf8.size()), typeChar, whole) == noErr)
        return BytesOf(whole);
    std::string text;
    for (size_t at = 0; at < inUtf8.size();) {
        size_t next = at + 1;
        while (next < inUtf8.size() && (inUtf8[next] & 0xC0) == 0x80) ++next;
        text += MacRomanCharacter(std::string_view(inUtf8).substr(at, next - at));
        at = next;
    }
    return text;
}

void ConvertTo(DescType inType, StAEDescriptor& ioDesc) {
    const DescType type = ioDesc.mDesc.descriptorType;
    if (inType == typeWildCard || inType == type) return;
    if (type == typeUTF8Text && IsText(inType)) MakeMacRoman(BytesOf(ioDesc), inType, ioDesc);
    StAEDescriptor converted;
    ThrowIfError(AECoerceDesc(ioDesc, inType, converted));
    std::swap(ioDesc.mDesc, converted.mDesc);
}

bool BooleanFrom(const AEDesc& inDesc) {
    Boolean value = false;
    UExtractFromAEDesc::TheBoolean(inDesc, value);
    return value != 0;
}

OSType CodeFrom(const AEDesc& inDesc) {
    const std::string bytes = BytesOf(inDesc);
    if (bytes.size() != sizeof(OSType)) LException::Throw(errAECoercionFail);
    OSType code = 0;
    for (const char byte : bytes) code = code << 8 | UInt8(byte);
    return code;
}

std::string TextFrom(const AEDesc& inDesc) {
    StAEDescriptor text;
    ThrowIfError(AECoerceDesc(&inDesc, typeUTF8Text, text));
    return BytesOf(text);
}

std::string BytesOf(const AEDesc& inDesc) {
    std::string bytes(size_t(AEGetDescDataSize(&inDesc)), '\0');
    ThrowIfError(AEGetDescData(&inDesc, bytes.data(), Size(bytes.size())));
    return bytes;
}

}  // namespace recorder
