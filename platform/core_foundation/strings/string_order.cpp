// Order of texts: by code points, with case, digits and equivalent forms set aside on request.
#include "core_foundation/strings/string_order.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <string>

#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

// A text that is read from its start on.
struct Reader {
    std::u16string_view text;
    size_t at = 0;

    bool IsAtEnd() const { return at == text.size(); }
    bool IsAtDigit() const { return !IsAtEnd() && text[at] >= u'0' && text[at] <= u'9'; }
    UChar32 Next() {
        UChar32 character;
        U16_NEXT(text.data(), at, text.size(), character);
        return character;
    }
    // Numbers that 64 bits cannot hold count as the largest.
    UInt64 NextNumber() {
        UInt64 number = 0;
        while (IsAtDigit()) {
            const UInt64 digit = text[at++] - u'0';
            const bool fits = number <= (UINT64_MAX - digit) / 10;
            number = fits ? number * 10 + digit : UINT64_MAX;
        }
        return number;
    }
};

template <typename T>
CFComparisonResult Order(T inOne, T inOther) {
    return inOne < inOther   ? kCFCompareLessThan
           : inOther < inOne ? kCFCompareGreaterThan
                             : kCFCompareEqualTo;
}

CFComparisonResult CompareNext(Reader* ioOne, Reader* ioOther, CFOptionFlags inFlags) {
    if ((inFlags & kCFCompareNumerically) && ioOne->IsAtDigit() && ioOther->IsAtDigit()) {
        return Order(ioOne->NextNumber(), ioOther->NextNumber());
    }
    const UChar32 one = ioOne->Next(), other = ioOther->Next();
    if (!(inFlags & kCFCompareCaseInsensitive)) return Order(one, other);
    return Order(u_foldCase(one, U_FOLD_CASE_DEFAULT), u_foldCase(other, U_FOLD_CASE_DEFAULT));
}

CFComparisonResult CompareCharacters(std::u16string_view inOne, std::u16string_view inOther,
                                     CFOptionFlags inFlags) {
    Reader one{inOne}, other{inOther};
    while (!one.IsAtEnd() && !other.IsAtEnd()) {
        const CFComparisonResult order = CompareNext(&one, &other, inFlags);
        if (order != kCFCompareEqualTo) return order;
    }
    return Order(other.IsAtEnd(), one.IsAtEnd());
}

std::u16string Decomposed(std::u16string_view inText) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::Normalizer2* form = icu::Normalizer2::getNFDInstance(error);
    if (U_FAILURE(error)) return std::u16string(inText);
    const icu::UnicodeString text = form->normalize(
        icu::UnicodeString(false, inText.data(), static_cast<int32_t>(inText.size())), error);
    return std::u16string(text.getBuffer(), static_cast<size_t>(text.length()));
}

char16_t AsciiFolded(char16_t inUnit) {
    return static_cast<char16_t>(inUnit >= u'A' && inUnit <= u'Z' ? inUnit + 32 : inUnit);
}

// Where a look at single units has to end: at the first that differ or, when case is set aside, at
// the first that is not ASCII.
size_t EqualUnits(std::u16string_view inOne, std::u16string_view inOther, CFOptionFlags inFlags) {
    const size_t length = std::min(inOne.size(), inOther.size());
    size_t at = 0;
    if (inFlags & kCFCompareCaseInsensitive) {
        while (at < length && (inOne[at] | inOther[at]) < 0x80 &&
               AsciiFolded(inOne[at]) == AsciiFolded(inOther[at]))
            ++at;
        return at;
    }
    while (at < length && inOne[at] == inOther[at]) ++at;
    // The halves of a character belong together.
    const bool isInside = at > 0 && U16_IS_LEAD(inOne[at - 1]);
    return isInside ? at - 1 : at;
}

}  // namespace

CFComparisonResult Compare(std::u16string_view inOne, std::u16string_view inOther,
                           CFOptionFlags inFlags) {
    if (!(inFlags & (kCFCompareNonliteral | kCFCompareNumerically))) {
        const size_t equal = EqualUnits(inOne, inOther, inFlags);
        return CompareCharacters(inOne.substr(equal), inOther.substr(equal), inFlags);
    }
    if (!(inFlags & kCFCompareNonliteral)) return CompareCharacters(inOne, inOther, inFlags);
    return CompareCharacters(Decomposed(inOne), Decomposed(inOther), inFlags);
}

}  // namespace carbon

CFComparisonResult CFStringCompare(CFStringRef theString1, CFStringRef theString2,
                                   CFOptionFlags compareOptions) {
    return carbon::Compare(carbon::View(theString1), carbon::View(theString2), compareOptions);
}

CFComparisonResult CFStringCompareWithOptions(CFStringRef theString1, CFStringRef theString2,
                                              CFRange rangeToCompare,
                                              CFOptionFlags compareOptions) {
    const auto text = carbon::View(theString1);
    const CFRange range = carbon::Clip(rangeToCompare, text.size());
    return carbon::Compare(
        text.substr(static_cast<size_t>(range.location), static_cast<size_t>(range.length)),
        carbon::View(theString2), compareOptions);
}
