// Owns reading a decimal number from a text.
#include <Carbon/fp.h>

#include <algorithm>
#include <cstring>
#include <string_view>

#include "text_utilities/decimals.h"

namespace carbon {
namespace {

constexpr SInt32 kLargestExponent = 32767;

bool IsDigit(char inCharacter) {
    return inCharacter >= '0' && inCharacter <= '9';
}

// Walks over one number. What it has taken is a number up to mNumberEnd; whether the rest could
// still become part of it is told by reaching the end of the text.
class DecimalScanner {
  public:
    DecimalScanner(const char* inText, decimal* out) : mNext(inText), mDecimal(out) {
        *out = {};
        Scan();
    }

    const char* NumberEnd() const { return mNumberEnd; }
    bool IsPrefix() const { return *mNext == '\0'; }

  private:
    void Scan() {
        while (*mNext == ' ' || *mNext == '\t') ++mNext;
        if (*mNext == '-' || *mNext == '+') mDecimal->sgn = *mNext++ == '-';
        if (TakeWord("INF")) return Finish("I");
        if (TakeWord("NAN")) return TakeNaN();
        TakeDigits();
    }

    void Finish(std::string_view inDigits) {
        mNumberEnd = mNext;
        mDecimal->sig.length = UInt8(inDigits.size());
        inDigits.copy(reinterpret_cast<char*>(mDecimal->sig.text), inDigits.size());
    }

    // In any case. The beginning of a word at the end of the text is taken without being found.
    bool TakeWord(std::string_view inWord) {
        size_t length = 0;
        while (length < inWord.size() && (mNext[length] & ~0x20) == inWord[length]) ++length;
        if (length < inWord.size() && mNext[length] != '\0') return false;
        mNext += length;
        return length == inWord.size();
    }

    void TakeNaN() {
        static constexpr char kHex[] = "0123456789ABCDEF";
        char digits[] = {'N', '4', '0', '1', '1'};
        Finish({digits, sizeof digits});
        if (*mNext != '(') return;
        unsigned code = 0;
        for (++mNext; IsDigit(*mNext); ++mNext)
            code = std::min(code * 10 + unsigned(*mNext - '0'), 0x1000U);
        if (*mNext != ')') return;
        ++mNext;
        for (int i = 4; i > 1; --i, code >>= 4) digits[i] = kHex[code & 0xF];
        Finish({digits, sizeof digits});
    }

    void TakeDigits() {
        bool hasDigits = TakeRun(0);
        if (*mNext == '.') {
            ++mNext;
            hasDigits |= TakeRun(-1);
        }
        if (!hasDigits) return;
        mNumberEnd = mNext;
        TakeExponent();
        Store();
    }

    // The digits from here; each behind the point lowers the exponent by one.
    bool TakeRun(SInt32 inStep) {
        const char* const first = mNext;
        for (; IsDigit(*mNext); ++mNext) {
            mExponent += inStep;
            AddDigit(*mNext);
        }
        return mNext != first;
    }

    void AddDigit(char inDigit) {
        if (mCount == 0 && inDigit == '0') return;
        if (mCount < SIGDIGLEN)
            mDecimal->sig.text[mCount++] = UInt8(inDigit);
        else
            ++mExponent;
    }

    void TakeExponent() {
        if (*mNext != 'e' && *mNext != 'E') return;
        ++mNext;
        const bool isNegative = *mNext == '-';
        if (*mNext == '-' || *mNext == '+') ++mNext;
        if (!IsDigit(*mNext)) return;
        SInt32 exponent = 0;
        for (; IsDigit(*mNext); ++mNext)
            exponent = std::min(exponent * 10 + (*mNext - '0'), 1000000);
        mExponent += isNegative ? -exponent : exponent;
        mNumberEnd = mNext;
    }

    void Store() {
        if (mCount == 0) mDecimal->sig.text[mCount++] = '0';
        mDecimal->sig.length = UInt8(mCount);
        mDecimal->exp = SInt16(std::clamp(mExponent, -kLargestExponent, kLargestExponent));
    }

    const char* mNext;
    const char* mNumberEnd = nullptr;
    decimal* mDecimal;
    SInt32 mExponent = 0;
    int mCount = 0;
};

}  // namespace
}  // namespace carbon

using namespace carbon;

void str2dec(const char* s, SInt16* ix, decimal* d, SInt16* vp) {
    const DecimalScanner scanner(s + *ix, d);
    *vp = scanner.IsPrefix();
    if (scanner.NumberEnd()) {
        *ix = SInt16(scanner.NumberEnd() - s);
        return;
    }
    const double none = NaNWithCode(kBadText);
    const decform form = {FLOATDECIMAL, 0, 1};
    num2dec(&form, none, d);
}
