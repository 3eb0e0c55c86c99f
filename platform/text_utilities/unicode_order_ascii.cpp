// The order of printable ASCII, from a table that ICU fills once: what most names are made of. The
// accented letters of Latin 1 may stand in them too, where both texts have the same.
#include <unicode/uset.h>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "text_utilities/unicode_order.h"

namespace carbon {

namespace {

constexpr UCCollateOptions kNames = kUCCollateStandardOptions |
                                    kUCCollatePunctuationSignificantMask |
                                    kUCCollateDigitsOverrideMask | kUCCollateDigitsAsNumberMask;
constexpr char16_t kFirst = 0x20, kLast = 0x7E;
constexpr size_t kMostDigits = 254;  // ICU compares longer numbers in pieces

struct CloseSet {
    void operator()(USet* inSet) const { uset_close(inSet); }
};

bool IsAccentedLatin(char16_t inUnit) {
    return inUnit >= 0xC0 && inUnit <= 0xFF;
}

// Characters that change nothing about those beside them.
bool IsSimple(char16_t inUnit) {
    return (inUnit >= kFirst && inUnit <= kLast) || IsAccentedLatin(inUnit);
}

// Whether such letters stand for something together, as "ch" and "dz" do in some languages.
bool HasContractions(const UCollator* inCollator) {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<USet, CloseSet> contractions(uset_openEmpty());
    ucol_getContractionsAndExpansions(inCollator, contractions.get(), nullptr, false, &error);
    bool found = U_FAILURE(error);
    for (int32_t i = 0; i < uset_getItemCount(contractions.get()); ++i) {
        UChar32 start, end;
        char16_t text[32];
        error = U_ZERO_ERROR;
        const int32_t length = uset_getItem(contractions.get(), i, &start, &end, text, 32, &error);
        if (U_FAILURE(error) || length < 2) continue;
        found = found || std::all_of(text, text + length, IsSimple);
    }
    return found;
}

struct AsciiOrder {
    bool isUsable = false;
    std::array<UInt8, 128> rank{};  // 0 for what is not printable; letters without their case
    bool capitalsFirst = false;
};

int CollateUnits(const UCollator* inCollator, char16_t inOne, char16_t inOther) {
    return ucol_strcoll(inCollator, &inOne, 1, &inOther, 1);
}

// Ranks from 1 on; a letter and its capital have one rank, all digits another.
AsciiOrder MakeAsciiOrder() {
    AsciiOrder order;
    const UCollator* collator = CollatorFor(kNames | kUCCollateCaseInsensitiveMask, false);
    const UCollator* withCase = CollatorFor(kNames, false);
    if (!collator || !withCase || HasContractions(collator)) return order;
    std::vector<char16_t> units;
    for (char16_t unit = kFirst; unit <= kLast; ++unit) units.push_back(unit);
    std::stable_sort(units.begin(), units.end(), [&](char16_t one, char16_t other) {
        return CollateUnits(collator, one, other) < 0;
    });
    UInt8 rank = 0;
    for (size_t i = 0; i < units.size(); ++i) {
        const bool isNew = i == 0 || CollateUnits(collator, units[i - 1], units[i]) != 0;
        order.rank[units[i]] = rank = static_cast<UInt8>(rank + isNew);
    }
    // A language may order letters otherwise, but case only by turning it round as a whole.
    order.capitalsFirst = CollateUnits(withCase, u'A', u'a') < 0;
    order.isUsable = true;
    for (char16_t small = u'a'; small <= u'z'; ++small) {
        const auto capital = static_cast<char16_t>(small - 32);
        order.isUsable = order.isUsable && order.rank[small] == order.rank[capital];
    }
    return order;
}

const AsciiOrder& Order() {
    static const AsciiOrder order = MakeAsciiOrder();
    return order;
}

bool IsDigit(char16_t inUnit) {
    return inUnit >= u'0' && inUnit <= u'9';
}

// The digits of the number at *ioAt, without zeros in front of it; *ioAt is then behind it.
std::u16string_view Number(std::u16string_view inText, size_t* ioAt) {
    size_t at = *ioAt;
    while (at < inText.size() && inText[at] == u'0') ++at;
    const size_t start = at;
    while (at < inText.size() && IsDigit(inText[at])) ++at;
    *ioAt = at;
    return inText.substr(start, at - start);
}

int CompareNumbers(std::u16string_view inOne, std::u16string_view inOther) {
    if (inOne.size() != inOther.size()) return inOne.size() < inOther.size() ? -1 : 1;
    return inOne.compare(inOther);
}

enum class Found { kLess, kSame, kGreater, kUnknown };

Found FromOrder(int inOrder) {
    return inOrder < 0 ? Found::kLess : inOrder > 0 ? Found::kGreater : Found::kSame;
}

// Two texts read side by side until something other than case differs.
class Pair {
  public:
    Pair(std::u16string_view inOne, std::u16string_view inOther) : mOne(inOne), mOther(inOther) {}

    Found Compare(const AsciiOrder& inOrder) {
        while (mAt < mOne.size() && mAtOther < mOther.size()) {
            const Found found = CompareNext(inOrder);
            if (found != Found::kSame) return found;
        }
        return CompareEnds();
    }

    // Of the first letters that differ in case alone: below 0 when the first text has the small
    // one.
    int CaseOrder() const { return mCaseOrder; }

  private:
    static bool IsSimpleAt(std::u16string_view inText, size_t inAt) {
        return inAt >= inText.size() || IsSimple(inText[inAt]);
    }

    // A difference counts only where nothing behind it could change the characters that differ.
    Found Settled(int inOrder) const {
        const bool isSettled = IsSimpleAt(mOne, mAt) && IsSimpleAt(mOther, mAtOther);
        return isSettled ? FromOrder(inOrder) : Found::kUnknown;
    }

    Found CompareDigits() {
        const auto one = Number(mOne, &mAt), other = Number(mOther, &mAtOther);
        if (one.size() > kMostDigits || other.size() > kMostDigits) return Found::kUnknown;
        return Settled(CompareNumbers(one, other));
    }

    Found CompareNext(const AsciiOrder& inOrder) {
        const char16_t unit = mOne[mAt], other = mOther[mAtOther];
        if (unit == other && IsAccentedLatin(unit)) return Step(Found::kSame);
        if ((unit | other) >= 0x80) return Found::kUnknown;
        if (IsDigit(unit) && IsDigit(other)) return CompareDigits();
        const int rank = inOrder.rank[unit], otherRank = inOrder.rank[other];
        if (rank == 0 || otherRank == 0) return Found::kUnknown;
        if (mCaseOrder == 0 && rank == otherRank) mCaseOrder = int{other} - int{unit};
        Step(Found::kSame);
        return rank == otherRank ? Found::kSame : Settled(rank - otherRank);
    }

    Found Step(Found inFound) {
        ++mAt;
        ++mAtOther;
        return inFound;
    }

    // The text that goes on is greater.
    Found CompareEnds() const {
        return Settled(int{mAt < mOne.size()} - int{mAtOther < mOther.size()});
    }

    std::u16string_view mOne, mOther;
    size_t mAt = 0, mAtOther = 0;
    int mCaseOrder = 0;
};

int Sign(int inOrder) {
    return (inOrder > 0) - (inOrder < 0);
}

// What is left when only case, and zeros in front of numbers, can still differ.
UnicodeOrder SameButForCase(std::u16string_view inOne, std::u16string_view inOther, int inCaseOrder,
                            bool inIgnoresCase) {
    if (inCaseOrder != 0) {
        return {inIgnoresCase, (inIgnoresCase ? 1 : 2) * Sign(inCaseOrder)};
    }
    return {true, Sign(inOne.compare(inOther))};
}

}  // namespace

std::optional<UnicodeOrder> CompareAscii(UCCollateOptions inOptions, std::u16string_view inOne,
                                         std::u16string_view inOther) {
    const bool ignoresCase = inOptions & kUCCollateCaseInsensitiveMask;
    const bool isForNames =
        (inOptions & ~UCCollateOptions{kUCCollateCaseInsensitiveMask}) == kNames;
    const AsciiOrder& table = Order();
    if (!isForNames || !table.isUsable) return std::nullopt;
    Pair pair(inOne, inOther);
    switch (pair.Compare(table)) {
        case Found::kLess:
            return UnicodeOrder{false, -2};
        case Found::kGreater:
            return UnicodeOrder{false, 2};
        case Found::kUnknown:
            return std::nullopt;
        case Found::kSame:
            break;
    }
    const int caseOrder = table.capitalsFirst ? -pair.CaseOrder() : pair.CaseOrder();
    return SameButForCase(inOne, inOther, caseOrder, ignoresCase);
}

}  // namespace carbon
