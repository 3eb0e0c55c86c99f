// Owns `vantor get` and `vantor set`: properties of objects, named in words.
#include <algorithm>
#include <charconv>
#include <optional>

#include "Codes.h"
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

std::string Joined(Words::const_iterator inBegin, Words::const_iterator inEnd) {
    std::string text;
    for (auto word = inBegin; word != inEnd; ++word) text += (text.empty() ? "" : " ") + *word;
    return text;
}

// An object or a property, made from the outermost container inwards.
class Specifier {
  public:
    explicit Specifier(const Vocabulary& inVocabulary) : mVocabulary(inVocabulary) {}

    // PROPERTY, then any number of `of` CLASS SELECTOR and `of` PROPERTY; the last stands
    // outermost.
    void Make(const Words& inWords);
    const AEDesc* Desc() const { return mDesc; }

  private:
    void AddProperty(const std::string& inProperty);
    void AddElement(const std::string& inClass, const std::string& inSelector);

    const Vocabulary& mVocabulary;
    StAEDescriptor mDesc;  // null: the program itself
    OSType mClass = cApplication;
};

void Specifier::AddProperty(const std::string& inProperty) {
    const OSType code = mVocabulary.CodeFor(WordPlace::kProperty, inProperty, mClass);
    StAEDescriptor specifier;
    Build(AEBuildDesc(specifier, nullptr, "obj{ want:type(prop), from:@, form:prop, seld:type(@) }",
                      static_cast<const AEDesc*>(mDesc), code));
    mDesc = specifier;
    mClass = 0;  // whatever the property holds
}

void Specifier::AddElement(const std::string& inClass, const std::string& inSelector) {
    const OSType elementClass = mVocabulary.CodeFor(WordPlace::kClass, inClass);
    const OSType ordinal = Ordinal(inSelector);
    const AEDesc* container = mDesc;
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
    mDesc = specifier;
    mClass = elementClass;
}

void Specifier::Make(const Words& inWords) {
    auto end = inWords.end();
    for (;;) {
        auto begin = end;
        while (begin != inWords.begin() && *(begin - 1) != "of") --begin;
        if (begin == end) ThrowUsage("Beside `of` a word is missing");
        const bool isInnermost = begin == inWords.begin();
        if (isInnermost || end - begin == 1)
            AddProperty(Joined(begin, end));
        else
            AddElement(Joined(begin, end - 1), *(end - 1));
        if (isInnermost) return;
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

// A question or a change on its way to a program.
struct Errand {
    Errand(const Words& inWords, const std::string& inTarget, AEEventID inID)
        : words(VocabularyOf(inTarget)) {
        Specifier specifier(words);
        specifier.Make(inWords);
        MakeEvent(TargetNamed(inTarget), kAECoreSuite, inID, event);
        Build(AEPutParamDesc(event, keyDirectObject, specifier.Desc()));
    }

    const Vocabulary words;
    StAEDescriptor event, reply;
};

}  // namespace

void GetProperty(const PropertyRequest& inRequest) {
    Words words = inRequest.words;
    const std::string target = TakeLast(words, "target");
    Errand errand(words, target, kAEGetData);
    Send(errand.event, {}, errand.reply);
    ThrowIfRefused(errand.reply);
    StAEDescriptor value;
    const OSErr result = AEGetParamDesc(errand.reply, keyDirectObject, typeWildCard, value);
    if (result != noErr) throw Failure("The program answered without a value", result);
    const Vocabulary none;
    Show(value, inRequest.isPlain ? none : errand.words, inRequest.json);
}

void SetProperty(const PropertyRequest& inRequest) {
    Words words = inRequest.words;
    const std::string text = TakeLast(words, "value"), target = TakeLast(words, "target");
    StAEDescriptor value;
    MakeValue({text, VocabularyOf(target), nullptr, inRequest.json}, value);
    Errand errand(words, target, kAESetData);
    Build(AEPutParamDesc(errand.event, keyAEData, value));
    Send(errand.event, {}, errand.reply);
    ThrowIfRefused(errand.reply);
}

}  // namespace cli
