// Where a text is in another one.
#pragma once

#include <CoreFoundation/CFString.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace carbon {

// One unit of a folded text and the part of the original that it stands for.
struct FoldedUnit {
    char16_t unit;
    size_t start;   // that part of the original: a match that begins with this unit begins here
    size_t end;     // and one that ends with it ends here
    bool canStart;  // whether a match may begin with this unit
    bool canEnd;    // whether a match may end with it
};

// A text as a sequence of folded units, a few at a time, in either direction.
class FoldedText {
  public:
    FoldedText(std::u16string_view inText, size_t inStart, size_t inEnd, CFOptionFlags inFlags);

    // The next unit, or nothing at the end; backwards from the end of the text.
    std::optional<FoldedUnit> Next();

    // Goes on at this place of the original.
    void MoveTo(size_t inPlace);

  private:
    bool Refill();
    size_t SegmentEnd(size_t inStart) const;
    size_t SegmentStart(size_t inEnd) const;
    bool IsBoundary(size_t inPlace) const;
    void Fold(size_t inStart, size_t inEnd);
    void FoldTogether(std::u16string_view inSegment, size_t inStart);

    std::u16string_view mText;
    size_t mStart, mEnd;  // what is still to be folded
    CFOptionFlags mFlags;
    std::vector<FoldedUnit> mUnits;
    size_t mNext = 0;
};

// Finds one folded text in part of another, match after match without overlaps. Takes time in
// proportion to what it walks over, whatever the texts.
class FoldedSearch {
  public:
    FoldedSearch(std::u16string_view inText, const CFRange& inRange, std::u16string_view inNeedle,
                 CFOptionFlags inFlags);

    std::optional<CFRange> Next();

  private:
    std::optional<CFRange> Accept(const FoldedUnit& inLast);
    void Advance(char16_t inUnit);

    FoldedText mText;
    bool mBackwards, mAnchored;
    std::u16string mNeedle;           // folded, reversed when searching backwards
    std::vector<size_t> mFallback;    // how much still matches when the next unit does not
    std::vector<FoldedUnit> mRecent;  // the last units, a ring as long as the needle
    size_t mMatched = 0, mSeen = 0;
};

// The same for any options. Plain searches compare units in place, for as long as that does not
// make them compare most units many times.
class Search {
  public:
    // The range lies inside the text; both texts must stay.
    Search(std::u16string_view inText, const CFRange& inRange, std::u16string_view inNeedle,
           CFOptionFlags inFlags);

    std::optional<CFRange> Next();

  private:
    std::optional<CFRange> NextPlain();
    size_t Matching() const;
    void TurnToFolded();

    std::u16string_view mText, mNeedle;
    size_t mStart, mAt, mEnd;
    size_t mWasted = 0;  // units compared in places that did not match
    CFOptionFlags mFlags;
    std::optional<FoldedSearch> mFolded;
};

}  // namespace carbon
