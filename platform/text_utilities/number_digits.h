// The digits of a number by their places, for writing them into a format.
#pragma once

#include <Carbon/fp.h>

namespace carbon {

// Place 0 is the ones, -1 the tenths.
class NumberDigits {
  public:
    explicit NumberDigits(const decimal& inDecimal) : mDecimal(inDecimal) {
        if (IsZero()) mDecimal.exp = 0;
    }

    bool IsZero() const { return mDecimal.sig.text[0] == '0'; }

    // The highest place that is not zero; -1 or less if there is nothing in front of the point.
    int Top() const { return IsZero() ? -1 : mDecimal.exp + mDecimal.sig.length - 1; }

    // The lowest place that is not zero; 0 or more if there is nothing behind the point.
    int Bottom() const {
        int zeros = 0;
        while (zeros < mDecimal.sig.length - 1 &&
               mDecimal.sig.text[mDecimal.sig.length - 1 - zeros] == '0')
            ++zeros;
        return IsZero() ? 0 : mDecimal.exp + zeros;
    }

    UInt8 At(int inPlace) const {
        const int index = mDecimal.sig.length - 1 - (inPlace - mDecimal.exp);
        return index >= 0 && index < mDecimal.sig.length ? mDecimal.sig.text[index] : UInt8('0');
    }

    void MovePoint(int inPlaces) { mDecimal.exp = SInt16(mDecimal.exp + inPlaces); }

  private:
    decimal mDecimal;
};

}  // namespace carbon
