// The old form of .strings files: "key" = "value"; with comments.
#include <unicode/uchar.h>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/internal.h"
#include "core_foundation/object.h"
#include "core_foundation/property_lists/property_list.h"
#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

class StringsParser {
  public:
    explicit StringsParser(std::u16string_view inText) : mText(inText) {}

    // Null at the first thing that does not belong there.
    CFDictionaryRef Parse() {
        Owned<CFMutableDictionaryRef> pairs(CFDictionaryCreateMutable(
            nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
        while (SkipSpace(), !mText.empty()) {
            if (!ReadPair(pairs.Get())) return nullptr;
        }
        return pairs.Detach();
    }

  private:
    bool ReadPair(CFMutableDictionaryRef ioPairs) {
        const auto key = ReadText();
        if (!key) return false;
        auto value = key;  // a key alone stands for itself
        if (TakeMark(u'=')) value = ReadText();
        if (!value || !TakeMark(u';')) return false;
        const Owned<CFStringRef> name(NewString(*key)), text(NewString(*value));
        CFDictionarySetValue(ioPairs, name.Get(), text.Get());
        return true;
    }

    bool TakeMark(char16_t inMark) {
        SkipSpace();
        if (!mText.starts_with(inMark)) return false;
        mText.remove_prefix(1);
        return true;
    }

    void SkipSpace() {
        while (!mText.empty()) {
            if (u_isUWhiteSpace(mText[0])) {
                mText.remove_prefix(1);
            } else if (mText.starts_with(u"//")) {
                mText.remove_prefix(std::min(mText.find_first_of(u"\r\n"), mText.size()));
            } else if (mText.starts_with(u"/*")) {
                const size_t end = mText.find(u"*/", 2);
                mText.remove_prefix(end == mText.npos ? mText.size() : end + 2);
            } else {
                return;
            }
        }
    }

    std::optional<std::u16string> ReadText() {
        SkipSpace();
        if (mText.starts_with(u'"')) return ReadQuoted();
        size_t length = 0;
        while (length < mText.size() && IsPlain(mText[length])) ++length;
        if (length == 0) return std::nullopt;
        const std::u16string text(mText.substr(0, length));
        mText.remove_prefix(length);
        return text;
    }

    static bool IsPlain(char16_t inUnit) {
        return u_isalnum(inUnit) || inUnit == u'_' || inUnit == u'.' || inUnit == u'-' ||
               inUnit == u'$' || inUnit == u':' || inUnit == u'/';
    }

    std::optional<std::u16string> ReadQuoted() {
        std::u16string text;
        mText.remove_prefix(1);
        while (!mText.empty()) {
            const char16_t unit = Take();
            if (unit == u'"') return text;
            if (unit == u'\\' && mText.empty()) return std::nullopt;
            text.push_back(unit == u'\\' ? ReadEscape() : unit);
        }
        return std::nullopt;
    }

    char16_t Take() {
        const char16_t unit = mText[0];
        mText.remove_prefix(1);
        return unit;
    }

    char16_t ReadEscape() {
        const char16_t letter = Take();
        switch (letter) {
            case u'n':
                return u'\n';
            case u't':
                return u'\t';
            case u'r':
                return u'\r';
            case u'U':
            case u'u':
                return ReadHex();
            default:
                return letter;
        }
    }

    char16_t ReadHex() {
        int value = 0;
        for (int i = 0; i < 4 && !mText.empty() && u_isxdigit(mText[0]); ++i) {
            value = value * 16 + u_digit(Take(), 16);
        }
        return static_cast<char16_t>(value);
    }

    std::u16string_view mText;
};

// UTF-16 has a byte-order mark or zeros in its first two bytes.
bool IsUTF16(std::string_view inBytes) {
    return inBytes.size() >= 2 &&
           (inBytes.starts_with("\xFE\xFF") || inBytes.starts_with("\xFF\xFE") ||
            inBytes[0] == '\0' || inBytes[1] == '\0');
}

}  // namespace

CFDictionaryRef DictionaryFromStringsFile(std::string_view inBytes) {
    if (inBytes.size() > kLargestPropertyList) return nullptr;
    const size_t start = inBytes.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    const auto rest = inBytes.substr(std::min(start, inBytes.size()));
    if (rest.starts_with("bplist") || rest.starts_with('<'))
        return DictionaryFromPropertyList(rest);
    const auto text =
        Decode(inBytes, IsUTF16(inBytes) ? kCFStringEncodingUTF16 : kCFStringEncodingUTF8, true);
    return text ? StringsParser(*text).Parse() : nullptr;
}

}  // namespace carbon
