// Percent escapes in texts that are to become URLs, and in parts of URLs.
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/strings/string_object.h"
#include "core_foundation/urls/url_object.h"

namespace carbon {

namespace {

constexpr std::u16string_view kLegal =
    u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789;/?:@&=+$,-_.!~*'()";

std::u16string_view Characters(CFStringRef inSet) {
    return inSet ? View(inSet) : std::u16string_view();
}

bool Holds(std::u16string_view inSet, UChar32 inCharacter) {
    char16_t units[2];
    size_t count = 0;
    U16_APPEND_UNSAFE(units, count, inCharacter);
    return inSet.find(std::u16string_view(units, count)) != inSet.npos;
}

int HexValue(char16_t inUnit) {
    if (inUnit >= u'0' && inUnit <= u'9') return inUnit - u'0';
    const int lower = inUnit | 0x20;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// The bytes of the escapes that stand one after another from inStart on; nothing for a broken one.
std::optional<std::string> EscapedBytes(std::u16string_view inText, size_t inStart) {
    std::string bytes;
    for (size_t at = inStart; at < inText.size() && inText[at] == u'%'; at += 3) {
        if (inText.size() - at < 3) return std::nullopt;
        const int high = HexValue(inText[at + 1]), low = HexValue(inText[at + 2]);
        if (high < 0 || low < 0) return std::nullopt;
        bytes.push_back(static_cast<char>(high * 16 + low));
    }
    return bytes;
}

// The characters of UTF-8 bytes, those in inLeave as their escapes inEscapes. False: not UTF-8.
bool AppendDecoded(const std::string& inBytes, std::u16string_view inEscapes,
                   std::u16string_view inLeave, std::u16string* ioText) {
    const auto* bytes = reinterpret_cast<const UInt8*>(inBytes.data());
    for (size_t at = 0; at < inBytes.size();) {
        const size_t start = at;
        UChar32 character;
        U8_NEXT(bytes, at, inBytes.size(), character);
        if (character < 0) return false;
        if (Holds(inLeave, character)) {
            ioText->append(inEscapes.substr(3 * start, 3 * (at - start)));
        } else if (U_IS_BMP(character)) {
            ioText->push_back(static_cast<char16_t>(character));
        } else {
            ioText->append({U16_LEAD(character), U16_TRAIL(character)});
        }
    }
    return true;
}

CFStringRef WithoutEscapes(std::u16string_view inText, std::u16string_view inLeave) {
    std::u16string text;
    for (size_t at = 0; at < inText.size();) {
        const size_t percent = std::min(inText.find(u'%', at), inText.size());
        text.append(inText.substr(at, percent - at));
        const auto bytes = EscapedBytes(inText, percent);
        const auto escapes = inText.substr(percent, bytes ? 3 * bytes->size() : 0);
        if (!bytes || !AppendDecoded(*bytes, escapes, inLeave, &text)) return nullptr;
        at = percent + escapes.size();
    }
    return NewString(text);
}

void AppendEscapes(std::string_view inBytes, std::u16string* ioText) {
    constexpr char16_t kDigits[] = u"0123456789ABCDEF";
    for (const char character : inBytes) {
        const auto byte = static_cast<UInt8>(character);
        ioText->append({u'%', kDigits[byte >> 4], kDigits[byte & 15]});
    }
}

CFStringRef WithEscapes(std::u16string_view inText, std::u16string_view inLeave,
                        std::u16string_view inEscape, CFStringEncoding inEncoding) {
    std::u16string text;
    for (size_t at = 0; at < inText.size();) {
        const size_t start = at;
        UChar32 character;
        U16_NEXT(inText.data(), at, inText.size(), character);
        const auto units = inText.substr(start, at - start);
        const bool isLegal = Holds(kLegal, character) && !Holds(inEscape, character);
        if (isLegal || Holds(inLeave, character)) {
            text.append(units);
            continue;
        }
        const auto bytes = EncodeAll(units, inEncoding, 0, false);
        if (!bytes) return nullptr;
        AppendEscapes(*bytes, &text);
    }
    return NewString(text);
}

}  // namespace

}  // namespace carbon

CFStringRef CFURLCreateStringByReplacingPercentEscapes(CFAllocatorRef alloc,
                                                       CFStringRef originalString,
                                                       CFStringRef charactersToLeaveEscaped) {
    if (!charactersToLeaveEscaped) return CFStringCreateCopy(alloc, originalString);
    return carbon::OrNull([&] {
        return carbon::WithoutEscapes(carbon::View(originalString),
                                      carbon::View(charactersToLeaveEscaped));
    });
}

CFStringRef CFURLCreateStringByAddingPercentEscapes(CFAllocatorRef, CFStringRef originalString,
                                                    CFStringRef charactersToLeaveUnescaped,
                                                    CFStringRef legalURLCharactersToBeEscaped,
                                                    CFStringEncoding encoding) {
    return carbon::OrNull([&] {
        return carbon::WithEscapes(carbon::View(originalString),
                                   carbon::Characters(charactersToLeaveUnescaped),
                                   carbon::Characters(legalURLCharactersToBeEscaped), encoding);
    });
}
