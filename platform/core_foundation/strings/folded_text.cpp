// Texts folded for searching: case and equivalent forms set aside, with the way back to the
// original.
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

#include <algorithm>

#include "core_foundation/strings/string_search.h"

namespace carbon {

namespace {

// Where the composed form has a boundary, nothing on one side changes what is on the other.
const icu::Normalizer2& Form(bool inComposed) {
    static const auto* composed = [] {
        UErrorCode error = U_ZERO_ERROR;
        return icu::Normalizer2::getNFCInstance(error);
    }();
    static const auto* decomposed = [] {
        UErrorCode error = U_ZERO_ERROR;
        return icu::Normalizer2::getNFDInstance(error);
    }();
    return inComposed ? *composed : *decomposed;
}

icu::UnicodeString Decomposed(const icu::UnicodeString& inText) {
    UErrorCode error = U_ZERO_ERROR;
    return Form(false).normalize(inText, error);
}

icu::UnicodeString FoldedForm(std::u16string_view inSegment, CFOptionFlags inFlags) {
    icu::UnicodeString text(inSegment.data(), static_cast<int32_t>(inSegment.size()));
    if (inFlags & kCFCompareNonliteral) text = Decomposed(text);
    if (inFlags & kCFCompareCaseInsensitive) text.foldCase();
    if (inFlags & kCFCompareNonliteral) text = Decomposed(text);
    return text;
}

char16_t FoldAscii(char16_t inUnit, CFOptionFlags inFlags) {
    const bool isCapital = inUnit >= u'A' && inUnit <= u'Z';
    const bool folds = isCapital && (inFlags & kCFCompareCaseInsensitive);
    return static_cast<char16_t>(folds ? inUnit + 32 : inUnit);
}

// Whether each unit of the folded text stands for the unit at its own place.
bool IsInStep(std::u16string_view inSegment, const icu::UnicodeString& inFolded,
              CFOptionFlags inFlags) {
    if (static_cast<size_t>(inFolded.length()) != inSegment.size()) return false;
    for (size_t i = 0; i < inSegment.size(); ++i) {
        const UChar32 unit = inSegment[i];
        const bool folds = inFlags & kCFCompareCaseInsensitive;
        const UChar32 expected = folds ? u_foldCase(unit, U_FOLD_CASE_DEFAULT) : unit;
        if (U16_IS_SURROGATE(unit) || inFolded.charAt(static_cast<int32_t>(i)) != expected) {
            return false;
        }
    }
    return true;
}

}  // namespace

FoldedText::FoldedText(std::u16string_view inText, size_t inStart, size_t inEnd,
                       CFOptionFlags inFlags)
    : mText(inText), mStart(inStart), mEnd(inEnd), mFlags(inFlags) {}

std::optional<FoldedUnit> FoldedText::Next() {
    if (mNext == mUnits.size() && !Refill()) return std::nullopt;
    return mUnits[mNext++];
}

void FoldedText::MoveTo(size_t inPlace) {
    (mFlags & kCFCompareBackwards ? mEnd : mStart) = inPlace;
    mUnits.clear();
    mNext = 0;
}

bool FoldedText::Refill() {
    mUnits.clear();
    mNext = 0;
    if (mStart >= mEnd) return false;
    if (mFlags & kCFCompareBackwards) {
        const size_t end = mEnd;
        mEnd = SegmentStart(end);
        Fold(mEnd, end);
        std::reverse(mUnits.begin(), mUnits.end());
    } else {
        const size_t start = mStart;
        mStart = SegmentEnd(start);
        Fold(start, mStart);
    }
    return true;
}

// A segment is folded as a whole: a unit, a character, or a base with its marks.
size_t FoldedText::SegmentEnd(size_t inStart) const {
    size_t end = inStart + 1;
    while (end < mEnd && !IsBoundary(end)) ++end;
    return end;
}

size_t FoldedText::SegmentStart(size_t inEnd) const {
    size_t start = inEnd - 1;
    while (start > mStart && !IsBoundary(start)) --start;
    return start;
}

bool FoldedText::IsBoundary(size_t inPlace) const {
    const char16_t unit = mText[inPlace];
    const bool folds = mFlags & (kCFCompareCaseInsensitive | kCFCompareNonliteral);
    if (unit < 0x300 || !folds) return true;
    if (U16_IS_TRAIL(unit) && U16_IS_LEAD(mText[inPlace - 1])) return false;
    if (!(mFlags & kCFCompareNonliteral)) return true;
    UChar32 character;
    U16_GET(mText.data(), mStart, inPlace, mEnd, character);
    return Form(true).hasBoundaryBefore(character);
}

void FoldedText::Fold(size_t inStart, size_t inEnd) {
    const auto segment = mText.substr(inStart, inEnd - inStart);
    const bool folds = mFlags & (kCFCompareCaseInsensitive | kCFCompareNonliteral);
    if (segment.size() == 1 && (segment[0] < 0x80 || !folds)) {
        mUnits.push_back({FoldAscii(segment[0], mFlags), inStart, inEnd, true, true});
        return;
    }
    FoldTogether(segment, inStart);
}

// What folding leaves in step with the original can be found in parts, from any of its units to the
// end; otherwise the segment is found whole or not at all.
void FoldedText::FoldTogether(std::u16string_view inSegment, size_t inStart) {
    const icu::UnicodeString folded = FoldedForm(inSegment, mFlags);
    const bool inStep = IsInStep(inSegment, folded, mFlags);
    const auto count = static_cast<size_t>(folded.length());
    for (size_t i = 0; i < count; ++i) {
        mUnits.push_back({folded.charAt(static_cast<int32_t>(i)), inStep ? inStart + i : inStart,
                          inStart + inSegment.size(), i == 0 || inStep, i + 1 == count});
    }
}

}  // namespace carbon
