// Owns the wording of events.
#include "EventText.h"

#include "Codes.h"
#include "NamedText.h"
#include "Output.h"
#include "vantor/appleevents/StAEDescriptor.h"

namespace cli {
namespace {

constexpr size_t kMostShown = 200;         // characters of one parameter
constexpr Size kWorthPrinting = 64 << 10;  // bytes

UInt32 CodeAttribute(const AppleEvent& inEvent, AEKeyword inKey) {
    UInt32 code = 0;
    AEGetAttributePtr(&inEvent, inKey, typeType, nullptr, &code, sizeof code, nullptr);
    return EndianU32_BtoN(code);
}

std::string Printed(const AEDesc& inDesc) {
    Handle text = nullptr;
    if (AEPrintDescToHandle(&inDesc, &text) != noErr) return "?";
    const std::string printed(*text, static_cast<size_t>(GetHandleSize(text)));
    DisposeHandle(text);
    return printed;
}

std::string Beginning(const AEDesc& inDesc) {
    const Size size = AESizeOfFlattenedDesc(&inDesc);
    if (size > kWorthPrinting)
        return QuotedCode(inDesc.descriptorType) + ", " + Bytes(size) + "\u2026";
    const std::string text = Printed(inDesc);
    return text.size() > kMostShown ? text.substr(0, kMostShown) + "\u2026" : text;
}

// Calls `inTake` with the keyword and the descriptor of each parameter.
template <typename Take>
void ForEachParameter(const AppleEvent& inEvent, const Take& inTake) {
    SInt32 count = 0;
    if (AECountItems(&inEvent, &count) != noErr) return;
    for (SInt32 i = 1; i <= count; ++i) {
        AEKeyword key = 0;
        StAEDescriptor item;
        if (AEGetNthDesc(&inEvent, i, typeWildCard, &key, item) == noErr) inTake(key, item.mDesc);
    }
}

}  // namespace

AEEventClass ClassOf(const AppleEvent& inEvent) {
    return CodeAttribute(inEvent, keyEventClassAttr);
}

AEEventID IDOf(const AppleEvent& inEvent) {
    return CodeAttribute(inEvent, keyEventIDAttr);
}

std::string ParametersOf(const AppleEvent& inEvent, const Vocabulary& inWords,
                         const EventTerm* inTerm) {
    std::string text;
    ForEachParameter(inEvent, [&](AEKeyword key, const AEDesc& value) {
        text += (text.empty() ? "{ " : ", ") + QuotedCode(key) + ':' + Beginning(value);
    });
    return text.empty() ? "{}" : WithNames(text + " }", inWords, inTerm);
}

Json ParametersJson(const AppleEvent& inEvent, const Vocabulary& inWords, const EventTerm* inTerm) {
    Json parameters = Json::array();
    ForEachParameter(inEvent, [&](AEKeyword key, const AEDesc& value) {
        const std::string text = Printed(value), named = WithNames(text, inWords, nullptr);
        const std::string name = NameOfParameter(inTerm, key);
        Json parameter = {{"key", CodeText(key)}};
        if (!name.empty()) parameter["name"] = name;
        parameter["type"] = CodeText(value.descriptorType);
        parameter["text"] = text;
        if (named != text) parameter["named"] = named;
        parameters.push_back(std::move(parameter));
    });
    return parameters;
}

}  // namespace cli
