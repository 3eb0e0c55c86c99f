// Case, normal forms and which characters belong together.
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

#include "core_foundation/dates_and_locales/locale.h"
#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

icu::UnicodeString IcuText(std::u16string_view inText) {
    return icu::UnicodeString(inText.data(), static_cast<int32_t>(inText.size()));
}

void Assign(CFMutableStringRef ioString, const icu::UnicodeString& inText) {
    MutableString* string = Mutable(ioString);
    if (!string || inText.isBogus()) return;
    string->Assign(std::u16string(inText.getBuffer(), static_cast<size_t>(inText.length())));
}

const icu::Normalizer2* Form(CFStringNormalizationForm inForm) {
    UErrorCode error = U_ZERO_ERROR;
    switch (inForm) {
        case kCFStringNormalizationFormD:
            return icu::Normalizer2::getNFDInstance(error);
        case kCFStringNormalizationFormKD:
            return icu::Normalizer2::getNFKDInstance(error);
        case kCFStringNormalizationFormC:
            return icu::Normalizer2::getNFCInstance(error);
        case kCFStringNormalizationFormKC:
            return icu::Normalizer2::getNFKCInstance(error);
        default:
            return nullptr;
    }
}

bool IsCased(UChar32 inCharacter) {
    return u_hasBinaryProperty(inCharacter, UCHAR_CASED);
}

// Apostrophes, hyphenation and marks are inside a word. Kept: the period and the colon are not.
bool IsInsideWord(UChar32 inCharacter) {
    return inCharacter != u'.' && inCharacter != u':' &&
           u_hasBinaryProperty(inCharacter, UCHAR_CASE_IGNORABLE);
}

icu::UnicodeString Titlecased(UChar32 inCharacter, const icu::Locale& inLocale) {
    return icu::UnicodeString(inCharacter)
        .toTitle(nullptr, inLocale, U_TITLECASE_NO_BREAK_ADJUSTMENT);
}

icu::UnicodeString Capitalized(std::u16string_view inText, const icu::Locale& inLocale) {
    icu::UnicodeString text;
    bool isInWord = false;
    for (size_t at = 0; at < inText.size();) {
        UChar32 character;
        U16_NEXT(inText.data(), at, inText.size(), character);
        if (!IsCased(character)) {
            text.append(character);
            isInWord = isInWord && IsInsideWord(character);
            continue;
        }
        icu::UnicodeString single(character);
        text.append(isInWord ? single.toLower(inLocale) : Titlecased(character, inLocale));
        isInWord = true;
    }
    return text;
}

bool BelongsToPrevious(std::u16string_view inText, size_t inPlace) {
    if (inPlace == 0 || inPlace >= inText.size()) return false;
    if (U16_IS_TRAIL(inText[inPlace])) return U16_IS_LEAD(inText[inPlace - 1]);
    UChar32 character;
    U16_GET(inText.data(), 0, inPlace, inText.size(), character);
    return (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
}

}  // namespace

}  // namespace carbon

using carbon::View;

void CFStringLowercase(CFMutableStringRef theString, CFLocaleRef locale) {
    carbon::Assign(theString, carbon::IcuText(View(theString)).toLower(carbon::IcuLocale(locale)));
}

void CFStringUppercase(CFMutableStringRef theString, CFLocaleRef locale) {
    carbon::Assign(theString, carbon::IcuText(View(theString)).toUpper(carbon::IcuLocale(locale)));
}

void CFStringCapitalize(CFMutableStringRef theString, CFLocaleRef locale) {
    carbon::Assign(theString, carbon::Capitalized(View(theString), carbon::IcuLocale(locale)));
}

void CFStringNormalize(CFMutableStringRef theString, CFStringNormalizationForm theForm) {
    const icu::Normalizer2* form = carbon::Form(theForm);
    if (!form) return;
    UErrorCode error = U_ZERO_ERROR;
    const icu::UnicodeString text = form->normalize(carbon::IcuText(View(theString)), error);
    if (U_SUCCESS(error)) carbon::Assign(theString, text);
}

CFRange CFStringGetRangeOfComposedCharactersAtIndex(CFStringRef theString, CFIndex theIndex) {
    const auto text = View(theString);
    if (theIndex < 0 || static_cast<size_t>(theIndex) >= text.size()) {
        return CFRangeMake(kCFNotFound, 0);
    }
    auto start = static_cast<size_t>(theIndex), end = start + 1;
    while (carbon::BelongsToPrevious(text, start)) --start;
    while (carbon::BelongsToPrevious(text, end)) ++end;
    return CFRangeMake(static_cast<CFIndex>(start), static_cast<CFIndex>(end - start));
}
