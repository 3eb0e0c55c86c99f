// Putting values into formats.
#include "core_foundation/strings/string_format.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <vector>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/strings/format_directive.h"
#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

constexpr int kWidestField = 255;

union Argument {
    SInt64 integer;
    double real;
    const void* pointer;
};

std::vector<Argument> Fetch(const std::vector<ArgumentType>& inTypes, va_list inArguments) {
    std::vector<Argument> arguments(inTypes.size());
    for (size_t i = 0; i < inTypes.size(); ++i) {
        switch (inTypes[i]) {
            case ArgumentType::kNone:
            case ArgumentType::kInt:
                arguments[i].integer = va_arg(inArguments, int);
                break;
            case ArgumentType::kLong:
                arguments[i].integer = va_arg(inArguments, long);
                break;
            case ArgumentType::kLongLong:
                arguments[i].integer = va_arg(inArguments, long long);
                break;
            case ArgumentType::kDouble:
                arguments[i].real = va_arg(inArguments, double);
                break;
            case ArgumentType::kPointer:
                arguments[i].pointer = va_arg(inArguments, const void*);
                break;
        }
    }
    return arguments;
}

// Numbers are written in the C locale while one of these lives.
class NeutralNumbers {
  public:
    NeutralNumbers() : mBefore(uselocale(NeutralLocale())) {}
    ~NeutralNumbers() { uselocale(mBefore); }
    NeutralNumbers(const NeutralNumbers&) = delete;
    NeutralNumbers& operator=(const NeutralNumbers&) = delete;

  private:
    locale_t mBefore;
};

class Writer {
  public:
    explicit Writer(const std::vector<Argument>& inArguments) : mArguments(inArguments) {}

    std::u16string Write(Directive inDirective) const {
        Settle(&inDirective.width);
        Settle(&inDirective.precision);
        if (inDirective.width.value < 0 && inDirective.width.argument >= 0) {
            inDirective.left = true;  // as with printf, a negative width argument
            inDirective.width.value = -inDirective.width.value;
        }
        switch (inDirective.type) {
            case ArgumentType::kNone:
                return inDirective.letter ? std::u16string(1, inDirective.letter) : u"%";
            case ArgumentType::kDouble:
                return Number(inDirective, {}, Value(inDirective).real);
            case ArgumentType::kPointer:
                return Pointer(inDirective);
            default:
                return Integer(inDirective);
        }
    }

  private:
    const Argument& Value(const Directive& inDirective) const {
        return mArguments[static_cast<size_t>(inDirective.argument)];
    }

    void Settle(FormatNumber* ioNumber) const {
        if (ioNumber->argument < 0) return;
        const SInt64 value = mArguments[static_cast<size_t>(ioNumber->argument)].integer;
        ioNumber->value = static_cast<int>(std::clamp<SInt64>(value, -kWidestField, kWidestField));
    }

    std::u16string Integer(const Directive& inDirective) const {
        const SInt64 value = Value(inDirective).integer;
        if (inDirective.letter == u'C') return std::u16string(1, static_cast<char16_t>(value));
        if (inDirective.letter == u'c') {
            const char character = static_cast<char>(value);
            return Padded(inDirective, Roman({&character, 1}));
        }
        const bool isSigned =
            inDirective.letter == u'd' || inDirective.letter == u'D' || inDirective.letter == u'i';
        return Number(
            inDirective, "ll",
            isSigned ? Shortened(inDirective, value) : ShortenedUnsigned(inDirective, value));
    }

    static SInt64 Shortened(const Directive& inDirective, SInt64 inValue) {
        if (inDirective.shortness == 1) return static_cast<SInt16>(inValue);
        return inDirective.shortness > 1 ? static_cast<SInt8>(inValue) : inValue;
    }

    static SInt64 ShortenedUnsigned(const Directive& inDirective, SInt64 inValue) {
        if (inDirective.shortness == 1) return static_cast<UInt16>(inValue);
        if (inDirective.shortness > 1) return static_cast<UInt8>(inValue);
        return inDirective.type == ArgumentType::kInt ? static_cast<UInt32>(inValue) : inValue;
    }

    std::u16string Pointer(const Directive& inDirective) const {
        const void* pointer = Value(inDirective).pointer;
        if (inDirective.letter == u'p') return Padded(inDirective, Address(pointer));
        if (!pointer) return u"(null)";
        switch (inDirective.letter) {
            case u'@':
                return DescriptionOf(pointer);
            case u'S':
                return Padded(inDirective, Units(inDirective, pointer));
            case u'P': {
                const auto* text = static_cast<const char*>(pointer);
                return Padded(inDirective,
                              Roman(Cut(inDirective, {text + 1, static_cast<UInt8>(*text)})));
            }
            default:
                return Padded(inDirective, Roman(CString(inDirective, pointer)));
        }
    }

    static std::u16string Address(const void* inPointer) {
        char text[32];
        std::snprintf(text, sizeof text, "0x%llx",
                      static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(inPointer)));
        return Roman(text);
    }

    static std::string_view Cut(const Directive& inDirective, std::string_view inText) {
        const int most = inDirective.precision.value;
        return most < 0 ? inText : inText.substr(0, static_cast<size_t>(most));
    }

    // With a precision the text needs no zero at its end.
    static std::string_view CString(const Directive& inDirective, const void* inText) {
        const auto* text = static_cast<const char*>(inText);
        const int most = inDirective.precision.value;
        if (most < 0) return text;
        size_t length = 0;
        while (length < static_cast<size_t>(most) && text[length]) ++length;
        return {text, length};
    }

    static std::u16string Units(const Directive& inDirective, const void* inText) {
        const auto* units = static_cast<const UniChar*>(inText);
        std::u16string text;
        while (*units && (inDirective.precision.value < 0 ||
                          text.size() < static_cast<size_t>(inDirective.precision.value))) {
            text.push_back(*units++);
        }
        return text;
    }

    static std::u16string Roman(std::string_view inText) {
        return *Decode(inText, kCFStringEncodingMacRoman, false);
    }

    static std::u16string Padded(const Directive& inDirective, std::u16string inText) {
        const auto width = static_cast<size_t>(std::max(inDirective.width.value, 0));
        if (inText.size() >= width) return inText;
        const std::u16string padding(width - inText.size(), u' ');
        return inDirective.left ? inText + padding : padding + inText;
    }

    template <typename T>
    static std::u16string Number(const Directive& inDirective, std::string_view inSize, T inValue) {
        const std::string format = PrintfFormat(inDirective, inSize);
        const NeutralNumbers neutral;
        std::string text(1024, '\0');  // 309 digits before the point, 255 behind it
        const int length = std::snprintf(text.data(), text.size(), format.c_str(),
                                         std::max(inDirective.width.value, 0),
                                         inDirective.precision.value, inValue);
        text.resize(static_cast<size_t>(std::max(length, 0)));
        return std::u16string(text.begin(), text.end());
    }

    // "%-*.*lld" and the like: only flags and letters that the parser let through.
    static std::string PrintfFormat(const Directive& inDirective, std::string_view inSize) {
        std::string format = "%";
        if (inDirective.left) format += '-';
        if (inDirective.plus) format += '+';
        if (inDirective.space) format += ' ';
        if (inDirective.zero) format += '0';
        format.append("*.*").append(inSize);
        const char16_t letter = inDirective.letter;
        const bool isOldLong = letter == u'D' || letter == u'U' || letter == u'O';
        return format += static_cast<char>(isOldLong ? letter + 32 : letter);
    }

    const std::vector<Argument>& mArguments;
};

}  // namespace

locale_t NeutralLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

std::u16string Format(std::u16string_view inFormat, va_list inArguments) {
    const std::vector<Directive> directives = ParseFormat(inFormat);
    const std::vector<Argument> arguments = Fetch(ArgumentTypes(directives), inArguments);
    const Writer writer(arguments);
    std::u16string text;
    size_t done = 0;
    for (const Directive& directive : directives) {
        text.append(inFormat.substr(done, directive.start - done)).append(writer.Write(directive));
        done = directive.end;
    }
    return text.append(inFormat.substr(done));
}

}  // namespace carbon

CFStringRef CFStringCreateWithFormat(CFAllocatorRef alloc, CFDictionaryRef formatOptions,
                                     CFStringRef format, ...) {
    va_list arguments;
    va_start(arguments, format);
    CFStringRef made =
        CFStringCreateWithFormatAndArguments(alloc, formatOptions, format, arguments);
    va_end(arguments);
    return made;
}

CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef, CFDictionaryRef,
                                                 CFStringRef format, va_list arguments) {
    return carbon::OrNull(
        [&] { return carbon::NewString(carbon::Format(carbon::View(format), arguments)); });
}
