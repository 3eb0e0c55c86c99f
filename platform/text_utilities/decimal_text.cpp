// Owns writing decimal numbers as text and reading them.
#include <Carbon/fp.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "text_utilities/decimals.h"

namespace carbon {
namespace {

// A text that becomes "?" when it outgrows the caller's buffer.
class DecimalText {
  public:
    void Add(std::string_view inText) {
        if (mLength + inText.size() > DECSTROUTLEN) mFits = false;
        if (!mFits) return;
        inText.copy(mText + mLength, inText.size());
        mLength += inText.size();
    }

    void Add(char inCharacter, SInt32 inCount) {
        for (SInt32 i = 0; i < inCount && mFits; ++i) Add({&inCharacter, 1});
    }

    void CopyTo(char* outText) const {
        const std::string_view text = mFits ? std::string_view(mText, mLength) : "?";
        outText[text.copy(outText, text.size())] = '\0';
    }

  private:
    char mText[DECSTROUTLEN];
    size_t mLength = 0;
    bool mFits = true;
};

void AddNaN(std::string_view inHexadecimal, DecimalText* out) {
    unsigned code = kBadText;
    const std::string_view low = inHexadecimal.substr(std::min<size_t>(inHexadecimal.size(), 2));
    std::sscanf(std::string(low).c_str(), "%x", &code);
    char text[16];
    std::snprintf(text, sizeof text, "NAN(%03u)", code & 0xFF);
    out->Add(text);
}

// What is no digits: infinity, NaN, or a record that makes no sense.
bool AddSpecial(const decimal& inDecimal, DecimalText* out) {
    const std::string_view digits = DigitsOf(inDecimal);
    if (digits.find_first_not_of("0123456789") == std::string_view::npos &&
        inDecimal.sig.length <= SIGDIGLEN)
        return false;
    if (digits == "I")
        out->Add("INF");
    else
        AddNaN(digits[0] == 'N' && inDecimal.sig.length <= SIGDIGLEN ? digits.substr(1) : "", out);
    return true;
}

void AddScientific(std::string_view inDigits, const decform& inForm, SInt32 inExponent,
                   DecimalText* out) {
    const auto length = SInt32(inDigits.size());
    const SInt32 zeros = std::max<SInt32>(inForm.digits, length) - length;
    const bool isZero = inDigits.find_first_not_of('0') == std::string_view::npos;
    out->Add(inDigits.substr(0, 1));
    if (length + zeros > 1) out->Add(".");
    out->Add(inDigits.substr(1));
    out->Add('0', zeros);
    char exponent[16];
    std::snprintf(exponent, sizeof exponent, "e%+d", isZero ? 0 : int(inExponent + length - 1));
    out->Add(exponent);
}

void AddFixed(std::string_view inDigits, const decform& inForm, SInt32 inExponent,
              DecimalText* out) {
    const auto length = SInt32(inDigits.size());
    const SInt32 places = std::max<SInt32>(inForm.digits, std::max<SInt32>(-inExponent, 0));
    const SInt32 whole = std::clamp<SInt32>(length + std::min<SInt32>(inExponent, 0), 0, length);
    out->Add(whole > 0 ? inDigits.substr(0, size_t(whole)) : "0");
    out->Add('0', inExponent);
    if (places == 0) return;
    const std::string_view behind = inDigits.substr(size_t(whole));
    const SInt32 before = inExponent < 0 ? -inExponent - SInt32(behind.size()) : 0;
    out->Add(".");
    out->Add('0', before);
    out->Add(behind);
    out->Add('0', places - before - SInt32(behind.size()));
}

void AddNumber(const decform& inForm, const decimal& inDecimal, DecimalText* out) {
    std::string_view digits = DigitsOf(inDecimal);
    if (digits.empty()) digits = "0";
    const SInt32 exponent = digits == "0" ? 0 : inDecimal.exp;
    if (inForm.style == FLOATDECIMAL)
        AddScientific(digits, inForm, exponent, out);
    else
        AddFixed(digits, inForm, exponent, out);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

void dec2str(const decform* f, const decimal* d, char* s) {
    DecimalText text;
    if (d->sgn)
        text.Add("-");
    else if (f->style == FLOATDECIMAL)
        text.Add(" ");
    if (!AddSpecial(*d, &text)) AddNumber(*f, *d, &text);
    text.CopyTo(s);
}
