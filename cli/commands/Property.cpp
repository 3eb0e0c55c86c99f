// Owns `vantor get` and `vantor set`: properties of objects, named in words.
#include <algorithm>
#include <charconv>
#include <optional>

#include "Commands.h"
#include "Failure.h"
#include "Message.h"
#include "Target.h"

namespace cli {
namespace {

using Words = std::vector<std::string>;

[[noreturn]] void ThrowUsage(const std::string& inSentence) {
    throw Failure(inSentence, paramErr, kBadUsage);
}

void Build(OSStatus inCode) {
    if (inCode != noErr) throw Failure("The object cannot be named", inCode);
}

std::optional<SInt32> Number(const std::string& inText) {
    SInt32 number = 0;
    const auto parsed = std::from_chars(inText.data(), inText.data() + inText.size(), number);
    const bool isWhole = parsed.ec == std::errc() && parsed.ptr == inText.data() + inText.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

// "first" and its like; 0 for anything else.
OSType Ordinal(const std::string& inText) {
    static constexpr struct {
        const char* word;
        OSType code;
    } kOrdinals[] = {{"first", kAEFirst},
                     {"last", kAELast},
                     {"middle", kAEMiddle},
                     {"any", kAEAny},
                     {"all", kAEAll}};
    for (const auto& ordinal : kOrdinals)
        if (inText == ordinal.word) return ordinal.code;
    return 0;
}

// The property of what the container means, null being the program itself.
void MakeProperty(const std::string& inProperty, StAEDescriptor& ioContainer) {
    StAEDescriptor specifier;
    Build(AEBuildDesc(specifier, nullptr, "obj{ want:type(prop), from:@, form:prop, seld:type(@) }",
                      static_cast<const AEDesc*>(ioContainer), CodeNamed(inProperty)));
    ioContainer = specifier;
}

void MakeElement(const std::string& inClass, const std::string& inSelector,
                 StAEDescriptor& ioContainer) {
    const OSType elementClass = CodeNamed(inClass), ordinal = Ordinal(inSelector);
    const AEDesc* container = ioContainer;
    const auto index = Number(inSelector);
    const auto id = inSelector.starts_with("id=") ? Number(inSelector.substr(3)) : std::nullopt;
    StAEDescriptor specifier;
    if (index)
        Build(AEBuildDesc(specifier, nullptr,
                          "obj{ want:type(@), from:@, form:indx, seld:long(@) }", elementClass,
                          container, *index));
    else if (ordinal != 0)
        Build(AEBuildDesc(specifier, nullptr,
                          "obj{ want:type(@), from:@, form:indx, seld:abso(enum(@)) }",
                          elementClass, container, ordinal));
    else if (id)
        Build(AEBuildDesc(specifier, nullptr, "obj{ want:type(@), from:@, form:ID, seld:long(@) }",
                          elementClass, container, *id));
    else
        Build(AEBuildDesc(specifier, nullptr,
                          "obj{ want:type(@), from:@, form:name, seld:TEXT(@) }", elementClass,
                          container, MacRoman(inSelector).c_str()));
    ioContainer = specifier;
}

// PROPERTY, then any number of `of` CLASS SELECTOR and `of` PROPERTY; the last stands outermost.
void MakeSpecifier(const Words& inWords, StAEDescriptor& outSpecifier) {
    auto end = inWords.end();
    for (;;) {
        auto begin = end;
        while (begin != inWords.begin() && *(begin - 1) != "of") --begin;
        const auto count = end - begin;
        const bool isWhole = begin == inWords.begin();
        if (count == 1)
            MakeProperty(*begin, outSpecifier);
        else if (count == 2 && !isWhole)
            MakeElement(*begin, *(begin + 1), outSpecifier);
        else
            ThrowUsage("An object is a class and which one, such as `of Disc 1`");
        if (isWhole) return;
        end = begin - 1;
    }
}

// Takes the last word off.
std::string TakeLast(Words& ioWords, const char* inWhat) {
    if (ioWords.size() < 2) ThrowUsage(std::string("A ") + inWhat + " is missing");
    std::string last = ioWords.back();
    ioWords.pop_back();
    return last;
}

void AddDirectObject(const Words& inWords, StAEDescriptor& ioEvent) {
    StAEDescriptor specifier;
    MakeSpecifier(inWords, specifier);
    Build(AEPutParamDesc(ioEvent, keyDirectObject, specifier));
}

}  // namespace

void GetProperty(Words inWords, bool inJson) {
    StAEDescriptor event, reply, value;
    const std::string target = TakeLast(inWords, "target");
    MakeEvent(TargetNamed(target), kAECoreSuite, kAEGetData, event);
    AddDirectObject(inWords, event);
    Send(event, {}, reply);
    ThrowIfRefused(reply);
    const OSErr result = AEGetParamDesc(reply, keyDirectObject, typeWildCard, value);
    if (result != noErr) throw Failure("The program answered without a value", result);
    Show(value, inJson);
}

void SetProperty(Words inWords, bool inJson) {
    StAEDescriptor event, reply, value;
    MakeValue(TakeLast(inWords, "value"), inJson, value);
    const std::string target = TakeLast(inWords, "target");
    MakeEvent(TargetNamed(target), kAECoreSuite, kAESetData, event);
    AddDirectObject(inWords, event);
    Build(AEPutParamDesc(event, keyAEData, value));
    Send(event, {}, reply);
    ThrowIfRefused(reply);
}

}  // namespace cli
