// The grammar of version strings: "7", "7.0.1", "7.0.1b3".
#include "core_foundation/bundles/version_number.h"

#include <optional>

namespace carbon {

namespace {

constexpr size_t kLongestVersion = 10;
constexpr UInt32 kLargestBuild = 255;
constexpr int kMostBuildDigits = 3;

class VersionParser {
  public:
    explicit VersionParser(std::u16string_view inText) : mText(inText) {}

    UInt32 Parse() {
        const UInt32 release = Release();
        const auto stage = Stage();
        const auto build = stage ? Build() : std::nullopt;
        return build && mText.empty() ? release | *stage << 8 | *build : 0;
    }

  private:
    bool IsAtDigit() const { return !mText.empty() && mText[0] >= u'0' && mText[0] <= u'9'; }

    UInt32 TakeDigit() {
        const UInt32 digit = mText[0] - u'0';
        mText.remove_prefix(1);
        return digit;
    }

    bool TakePeriod() {
        if (!mText.starts_with(u'.')) return false;
        mText.remove_prefix(1);
        return true;
    }

    // Kept: minor and bug-fix revision have one digit each, so 7.10 is no version but 0.
    UInt32 Release() {
        UInt32 major = 0, minor = 0, bugFix = 0;
        if (IsAtDigit()) major = TakeDigit();
        if (IsAtDigit()) major = major << 4 | TakeDigit();
        if (TakePeriod() && IsAtDigit()) {
            minor = TakeDigit();
            if (TakePeriod() && IsAtDigit()) bugFix = TakeDigit();
        }
        return major << 24 | minor << 20 | bugFix << 16;
    }

    std::optional<UInt32> Stage() {
        if (mText.empty()) return finalStage;
        const char16_t letter = mText[0];
        mText.remove_prefix(1);
        switch (letter) {
            case u'd':
                return developStage;
            case u'a':
                return alphaStage;
            case u'b':
                return betaStage;
            case u'f':
                return finalStage;
            default:
                return std::nullopt;
        }
    }

    std::optional<UInt32> Build() {
        UInt32 build = 0;
        for (int i = 0; i < kMostBuildDigits && IsAtDigit(); ++i) build = build * 10 + TakeDigit();
        return build <= kLargestBuild ? std::optional(build) : std::nullopt;
    }

    std::u16string_view mText;
};

}  // namespace

UInt32 VersionNumberFromString(std::u16string_view inText) {
    if (inText.empty() || inText.size() > kLongestVersion) return 0;
    return VersionParser(inText).Parse();
}

}  // namespace carbon
