// Descriptors and events as text, by walking them.
#include "support/ScriptedRecorder/EventText.h"

#include <cstdio>
#include <vector>

#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"

namespace {

std::vector<UInt8> BytesOf(const AEDesc& inDesc) {
    std::vector<UInt8> bytes(static_cast<std::size_t>(AEGetDescDataSize(&inDesc)));
    ThrowIfError(AEGetDescData(&inDesc, bytes.data(), static_cast<Size>(bytes.size())));
    return bytes;
}

bool HoldsACode(DescType inType) {
    return inType == typeType || inType == typeEnumerated || inType == typeAbsoluteOrdinal;
}

std::string TextOfBytes(DescType inType, const std::vector<UInt8>& inBytes) {
    if (HoldsACode(inType) && inBytes.size() == 4) {
        return "'" + std::string(inBytes.begin(), inBytes.end()) + "'";
    }
    std::string text;
    for (const UInt8 byte : inBytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02X", byte);
        text += digits;
    }
    return text;
}

// The items of a container, keys too when it has them.
std::string TextOfItems(const AEDesc& inContainer, bool inKeys, const char* inSeparator) {
    SInt32 count = 0;
    ThrowIfError(AECountItems(&inContainer, &count));
    std::string text;
    for (SInt32 i = 1; i <= count; ++i) {
        AEKeyword key;
        StAEDescriptor item;
        ThrowIfError(AEGetNthDesc(&inContainer, i, typeWildCard, &key, item));
        if (i > 1) text += inSeparator;
        if (inKeys) text += TextOfCode(key) + "=";
        text += TextOfDesc(item);
    }
    return text;
}

}  // namespace

std::string TextOfCode(FourCharCode inCode) {
    const FourCharCode bytes = BigEndianFromNative(inCode);
    return std::string(reinterpret_cast<const char*>(&bytes), sizeof bytes);
}

std::string TextOfDesc(const AEDesc& inDesc) {
    const std::string type = TextOfCode(inDesc.descriptorType);
    if (inDesc.descriptorType == typeAEList) {
        return type + " [" + TextOfItems(inDesc, false, ", ") + "]";
    }
    if (AECheckIsRecord(&inDesc)) return type + " {" + TextOfItems(inDesc, true, "; ") + "}";
    const std::string bytes = TextOfBytes(inDesc.descriptorType, BytesOf(inDesc));
    return bytes.empty() ? type : type + " " + bytes;
}

UInt32 NumberAttribute(const AppleEvent& inEvent, AEKeyword inKey, DescType inType) {
    UInt32 value = 0;
    DescType type;
    Size size;
    if (AEGetAttributePtr(&inEvent, inKey, inType, &type, &value, sizeof value, &size) != noErr) {
        return 0;
    }
    return NativeFromBigEndian(value);
}

std::string TextOfEvent(const AppleEvent& inEvent) {
    Boolean replyWanted = false;
    DescType type;
    Size size;
    AEGetAttributePtr(&inEvent, keyReplyRequestedAttr, typeBoolean, &type, &replyWanted,
                      sizeof replyWanted, &size);
    const std::string parameters = TextOfItems(inEvent, true, " ");
    return TextOfCode(NumberAttribute(inEvent, keyEventClassAttr, typeType)) + "/" +
           TextOfCode(NumberAttribute(inEvent, keyEventIDAttr, typeType)) +
           " tran=" + std::to_string(NumberAttribute(inEvent, keyTransactionIDAttr, typeSInt32)) +
           " reply=" + std::to_string(replyWanted) + (parameters.empty() ? "" : " ") + parameters;
}
