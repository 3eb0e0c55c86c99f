// Texts in the order of the user's language.
#include "text_utilities/unicode_order.h"

#include <Carbon/MacErrors.h>

#include <array>
#include <mutex>
#include <string>

#include "core_foundation/dates_and_locales/locale.h"

namespace carbon {

namespace {

bool Has(UCCollateOptions inOptions, UCCollateOptions inMask) {
    return (inOptions & inMask) == inMask;
}

bool CountsDigits(UCCollateOptions inOptions) {
    return Has(inOptions, kUCCollateDigitsOverrideMask | kUCCollateDigitsAsNumberMask);
}

UColAttributeValue Strength(UCCollateOptions inOptions) {
    if (Has(inOptions, kUCCollateDiacritInsensitiveMask)) return UCOL_PRIMARY;
    return Has(inOptions, kUCCollateWidthInsensitiveMask) ? UCOL_SECONDARY : UCOL_TERTIARY;
}

// The options as a number from 0 to 23 that stands for one set of ICU's attributes.
size_t RecipeNumber(UCCollateOptions inOptions) {
    const UColAttributeValue strength = Strength(inOptions);
    const size_t level = strength == UCOL_PRIMARY ? 0 : strength == UCOL_SECONDARY ? 1 : 2;
    return level * 8 + (Has(inOptions, kUCCollateCaseInsensitiveMask) ? 4u : 0u) +
           (Has(inOptions, kUCCollatePunctuationSignificantMask) ? 2u : 0u) +
           (CountsDigits(inOptions) ? 1u : 0u);
}

UCollator* OpenCollator(UCCollateOptions inOptions, bool inIdentical) {
    UErrorCode error = U_ZERO_ERROR;
    UCollator* collator = ucol_open(CurrentIcuLocale().getName(), &error);
    if (U_FAILURE(error)) return nullptr;
    const auto set = [&](UColAttribute inName, UColAttributeValue inValue) {
        ucol_setAttribute(collator, inName, inValue, &error);
    };
    const auto onOff = [](bool inOn) { return inOn ? UCOL_ON : UCOL_OFF; };
    set(UCOL_STRENGTH, inIdentical ? UCOL_IDENTICAL : Strength(inOptions));
    set(UCOL_CASE_LEVEL, onOff(!Has(inOptions, kUCCollateCaseInsensitiveMask)));
    set(UCOL_NUMERIC_COLLATION, onOff(CountsDigits(inOptions)));
    set(UCOL_NORMALIZATION_MODE, UCOL_ON);
    set(UCOL_ALTERNATE_HANDLING,
        Has(inOptions, kUCCollatePunctuationSignificantMask) ? UCOL_NON_IGNORABLE : UCOL_SHIFTED);
    return collator;
}

int Collate(const UCollator* inCollator, std::u16string_view inOne, std::u16string_view inOther) {
    return ucol_strcoll(inCollator, inOne.data(), static_cast<int32_t>(inOne.size()),
                        inOther.data(), static_cast<int32_t>(inOther.size()));
}

int Sign(int inOrder) {
    return (inOrder > 0) - (inOrder < 0);
}

// First what counts, then all that there is, at last the units themselves.
UnicodeOrder CompareWithCollator(UCCollateOptions inOptions, std::u16string_view inOne,
                                 std::u16string_view inOther) {
    const UCollator* collator = CollatorFor(inOptions, false);
    const UCollator* identical = CollatorFor(inOptions, true);
    const int order = collator ? Collate(collator, inOne, inOther) : inOne.compare(inOther);
    if (order != 0) return {false, 2 * Sign(order)};
    const int rest = identical ? Collate(identical, inOne, inOther) : 0;
    return {true, Sign(rest != 0 ? rest : inOne.compare(inOther))};
}

UnicodeOrder Compare(UCCollateOptions inOptions, std::u16string_view inOne,
                     std::u16string_view inOther) {
    const auto order = CompareAscii(inOptions, inOne, inOther);
    return order ? *order : CompareWithCollator(inOptions, inOne, inOther);
}

std::u16string_view Text(const UniChar* inText, UniCharCount inLength) {
    return {reinterpret_cast<const char16_t*>(inText), inText ? inLength : 0};
}

}  // namespace

const UCollator* CollatorFor(UCCollateOptions inOptions, bool inIdentical) {
    struct Slot {
        std::once_flag once;
        UCollator* collator = nullptr;
    };
    static auto* slots = new std::array<Slot, 48>;
    Slot& slot = (*slots)[2 * RecipeNumber(inOptions) + inIdentical];
    std::call_once(slot.once, [&] { slot.collator = OpenCollator(inOptions, inIdentical); });
    return slot.collator;
}

}  // namespace carbon

OSStatus UCCompareTextDefault(UCCollateOptions options, const UniChar* text1Ptr,
                              UniCharCount text1Length, const UniChar* text2Ptr,
                              UniCharCount text2Length, Boolean* equivalent, SInt32* order) {
    const bool hasTexts = (text1Ptr || text1Length == 0) && (text2Ptr || text2Length == 0);
    const bool areShort = text1Length <= INT32_MAX && text2Length <= INT32_MAX;
    if (!hasTexts || !areShort || (!equivalent && !order)) return paramErr;
    const carbon::UnicodeOrder found = carbon::Compare(options, carbon::Text(text1Ptr, text1Length),
                                                       carbon::Text(text2Ptr, text2Length));
    if (equivalent) *equivalent = found.equivalent;
    if (order) *order = found.order;
    return noErr;
}
