// Searching: unit by unit where the texts are kind to that, else one pass over the folded text with
// Knuth, Morris and Pratt's fallback table.
#include "core_foundation/strings/string_search.h"

#include <algorithm>
#include <cstring>

#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

std::u16string FoldedNeedle(std::u16string_view inNeedle, CFOptionFlags inFlags) {
    FoldedText text(inNeedle, 0, inNeedle.size(), inFlags);
    std::u16string folded;
    while (const auto unit = text.Next()) folded.push_back(unit->unit);
    return folded;
}

// How long a start of the needle also ends its first i + 1 units, less than all of them.
std::vector<size_t> FallbackTable(std::u16string_view inNeedle) {
    std::vector<size_t> table(inNeedle.size(), 0);
    for (size_t i = 1, matched = 0; i < inNeedle.size(); ++i) {
        while (matched > 0 && inNeedle[i] != inNeedle[matched]) matched = table[matched - 1];
        if (inNeedle[i] == inNeedle[matched]) ++matched;
        table[i] = matched;
    }
    return table;
}

// Where a unit is next, looking at four at a time: a difference of zero borrows from the unit
// above.
size_t PlaceOf(char16_t inUnit, std::u16string_view inText, size_t inAt) {
    constexpr UInt64 kOnes = 0x0001000100010001, kTops = 0x8000800080008000;
    const UInt64 wanted = kOnes * inUnit;
    size_t at = inAt;
    for (; inText.size() - at >= 4; at += 4) {
        UInt64 units;
        std::memcpy(&units, &inText[at], sizeof units);
        units ^= wanted;
        if ((units - kOnes) & ~units & kTops) break;
    }
    while (at < inText.size() && inText[at] != inUnit) ++at;
    return at;
}

size_t Start(const CFRange& inRange) {
    return static_cast<size_t>(inRange.location);
}
size_t End(const CFRange& inRange) {
    return static_cast<size_t>(inRange.location) + static_cast<size_t>(inRange.length);
}

// Names and versions: too short to be worth tables, in characters that fold one by one.
constexpr size_t kShort = 64;

bool IsShortAscii(std::u16string_view inText) {
    return inText.size() <= kShort &&
           std::all_of(inText.begin(), inText.end(), [](char16_t unit) { return unit < 0x80; });
}

std::optional<CFRange> FindShortAscii(std::u16string_view inText, const CFRange& inRange,
                                      std::u16string_view inNeedle, CFOptionFlags inFlags) {
    const auto isSame = [ignoresCase = (inFlags & kCFCompareCaseInsensitive) != 0](char16_t inA,
                                                                                   char16_t inB) {
        const auto folded = [](char16_t unit) {
            return unit >= u'A' && unit <= u'Z' ? unit | 32 : unit;
        };
        return inA == inB || (ignoresCase && folded(inA) == folded(inB));
    };
    const auto part = inText.substr(Start(inRange), End(inRange) - Start(inRange));
    const auto found =
        std::search(part.begin(), part.end(), inNeedle.begin(), inNeedle.end(), isSame);
    if (inNeedle.empty() || found == part.end()) return std::nullopt;
    return CFRange{static_cast<CFIndex>(found - part.begin()) + inRange.location,
                   static_cast<CFIndex>(inNeedle.size())};
}

bool SearchesForwards(CFOptionFlags inFlags) {
    return (inFlags & ~CFOptionFlags{kCFCompareCaseInsensitive}) == 0;
}

}  // namespace

FoldedSearch::FoldedSearch(std::u16string_view inText, const CFRange& inRange,
                           std::u16string_view inNeedle, CFOptionFlags inFlags)
    : mText(inText, Start(inRange), End(inRange), inFlags),
      mBackwards(inFlags & kCFCompareBackwards),
      mAnchored(inFlags & kCFCompareAnchored),
      mNeedle(FoldedNeedle(inNeedle, inFlags)),
      mFallback(FallbackTable(mNeedle)),
      mRecent(mNeedle.size()) {}

std::optional<CFRange> FoldedSearch::Next() {
    if (mNeedle.empty()) return std::nullopt;
    while (const auto unit = mText.Next()) {
        mRecent[mSeen++ % mRecent.size()] = *unit;
        Advance(unit->unit);
        if (mAnchored && mMatched < mSeen) return std::nullopt;
        if (mMatched < mNeedle.size()) continue;
        if (const auto match = Accept(*unit)) return match;
        if (mAnchored) return std::nullopt;
        mMatched = mFallback[mMatched - 1];
    }
    return std::nullopt;
}

void FoldedSearch::Advance(char16_t inUnit) {
    while (mMatched > 0 && mNeedle[mMatched] != inUnit) mMatched = mFallback[mMatched - 1];
    if (mNeedle[mMatched] == inUnit) ++mMatched;
}

// The match, if it begins and ends where matches may; the search then goes on behind it.
std::optional<CFRange> FoldedSearch::Accept(const FoldedUnit& inLast) {
    const FoldedUnit& oldest = mRecent[mSeen % mRecent.size()];
    const FoldedUnit& first = mBackwards ? inLast : oldest;
    const FoldedUnit& last = mBackwards ? oldest : inLast;
    if (!first.canStart || !last.canEnd) return std::nullopt;
    mText.MoveTo(mBackwards ? first.start : last.end);
    mMatched = mSeen = 0;
    return CFRange{static_cast<CFIndex>(first.start), static_cast<CFIndex>(last.end - first.start)};
}

Search::Search(std::u16string_view inText, const CFRange& inRange, std::u16string_view inNeedle,
               CFOptionFlags inFlags)
    : mText(inText),
      mNeedle(inNeedle),
      mStart(Start(inRange)),
      mAt(mStart),
      mEnd(End(inRange)),
      mFlags(inFlags) {
    constexpr CFOptionFlags kNotPlain =
        kCFCompareCaseInsensitive | kCFCompareBackwards | kCFCompareAnchored | kCFCompareNonliteral;
    if (mFlags & kNotPlain) TurnToFolded();
}

void Search::TurnToFolded() {
    mFolded.emplace(mText, CFRange{static_cast<CFIndex>(mAt), static_cast<CFIndex>(mEnd - mAt)},
                    mNeedle, mFlags);
}

std::optional<CFRange> Search::Next() {
    if (mNeedle.empty()) return std::nullopt;
    if (!mFolded) {
        const auto match = NextPlain();
        if (!mFolded) return match;
    }
    return mFolded->Next();
}

// How many units match here; the first does.
size_t Search::Matching() const {
    size_t count = 1;
    while (count < mNeedle.size() && mText[mAt + count] == mNeedle[count]) ++count;
    return count;
}

std::optional<CFRange> Search::NextPlain() {
    const auto places = mText.substr(0, mEnd - std::min(mEnd, mNeedle.size() - 1));
    for (; (mAt = PlaceOf(mNeedle[0], places, std::min(mAt, places.size()))) < places.size();
         ++mAt) {
        const size_t matching = Matching();
        if (matching == mNeedle.size()) {
            const CFRange match = {static_cast<CFIndex>(mAt), static_cast<CFIndex>(matching)};
            mAt += matching;
            return match;
        }
        mWasted += matching;
        if (mWasted > 1000 + 2 * (mAt - mStart)) {
            TurnToFolded();
            return std::nullopt;
        }
    }
    return std::nullopt;
}

}  // namespace carbon

using carbon::View;

Boolean CFStringFindWithOptions(CFStringRef theString, CFStringRef stringToFind,
                                CFRange rangeToSearch, CFOptionFlags searchOptions,
                                CFRange* result) {
    const auto text = View(theString);
    if (!carbon::IsInside(rangeToSearch, text.size())) return false;
    const auto needle = View(stringToFind);
    const bool isSimple = carbon::SearchesForwards(searchOptions) && carbon::IsShortAscii(text) &&
                          carbon::IsShortAscii(needle);
    const auto match = isSimple ? carbon::FindShortAscii(text, rangeToSearch, needle, searchOptions)
                                : carbon::Search(text, rangeToSearch, needle, searchOptions).Next();
    if (match && result) *result = *match;
    return match.has_value();
}

CFRange CFStringFind(CFStringRef theString, CFStringRef stringToFind,
                     CFOptionFlags compareOptions) {
    CFRange found = CFRangeMake(kCFNotFound, 0);
    CFStringFindWithOptions(theString, stringToFind, CFRangeMake(0, CFStringGetLength(theString)),
                            compareOptions, &found);
    return found;
}

Boolean CFStringHasPrefix(CFStringRef theString, CFStringRef prefix) {
    const auto start = View(prefix);
    return !start.empty() && View(theString).starts_with(start);
}

Boolean CFStringHasSuffix(CFStringRef theString, CFStringRef suffix) {
    const auto end = View(suffix);
    return !end.empty() && View(theString).ends_with(end);
}
