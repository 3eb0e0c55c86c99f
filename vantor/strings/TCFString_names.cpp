// Names of files, their order, and the ^0 of messages.
#include <algorithm>
#include <cstdlib>

#include "vantor/strings/TCFString.h"

namespace {

constexpr CFIndex kLongestSuffix = 12;  // with its period

const TCFString& Period() {
    static const TCFString period(".", kCFStringEncodingASCII);
    return period;
}

CFIndex LastPlaceOf(const TCFString& inString, const TCFString& inText) {
    return inString.Find(inText, kCFCompareBackwards).location;
}

TCFString Shortened(const TCFString& inName, SInt32 inMaxLength) {
    const TCFString suffix = inName.Suffix();
    if (suffix.IsEmpty() || suffix.Length() >= inMaxLength) return inName.Substring(0, inMaxLength);
    return inName.Substring(0, inMaxLength - suffix.Length()) + suffix;
}

const TCFString& Caret(int inIndex) {
    static const TCFString kCaret[] = {
        TCFString("^0", kCFStringEncodingASCII), TCFString("^1", kCFStringEncodingASCII),
        TCFString("^2", kCFStringEncodingASCII), TCFString("^3", kCFStringEncodingASCII)};
    return kCaret[inIndex];
}

}  // namespace

TCFString TCFString::Suffix() const {
    const CFIndex period = LastPlaceOf(*this, Period());
    if (period == kCFNotFound || Length() - period > kLongestSuffix) return Empty;
    return Substring(period, Length() - period);
}

TCFString TCFString::RemoveSuffix() const {
    static const TCFString space(" ", kCFStringEncodingASCII);
    const CFIndex period = LastPlaceOf(*this, Period());
    if (period == kCFNotFound || period < LastPlaceOf(*this, space)) return *this;
    return Length() - period > kLongestSuffix ? *this : Substring(0, period);
}

TCFString TCFString::HFSName(SInt32 inMaxLength) const {
    static const TCFString colon(":", DefaultEncoding()), underscore("_", DefaultEncoding());
    const bool isLong = inMaxLength >= 1 && Length() > inMaxLength;
    const TCFString name = isLong ? Shortened(*this, inMaxLength) : *this;
    return name.FindAndReplace(colon, underscore, CFRangeMake(0, name.Length()), 0);
}

SInt32 FinderCompare(UniCharCount inLength1, const UniChar* inChars1, UniCharCount inLength2,
                     const UniChar* inChars2, bool inCaseSensitive, bool inNeedEquivalence) {
    constexpr UCCollateOptions kWithCase =
        kUCCollateStandardOptions | kUCCollatePunctuationSignificantMask |
        kUCCollateDigitsOverrideMask | kUCCollateDigitsAsNumberMask;
    if (inChars1 == nullptr || inChars2 == nullptr)
        return SInt32{inChars1 != nullptr} - SInt32{inChars2 != nullptr};
    const UCCollateOptions options =
        inCaseSensitive ? kWithCase : kWithCase | kUCCollateCaseInsensitiveMask;
    Boolean equivalent = false;
    SInt32 order = 0;
    const OSStatus status = UCCompareTextDefault(options, inChars1, inLength1, inChars2, inLength2,
                                                 inNeedEquivalence ? &equivalent : nullptr, &order);
    return status != noErr || equivalent ? 0 : order;
}

SInt32 TCFString::FinderCompareTo(const TCFString& inOther, Boolean inStrict) const {
    HFSUniStr255 name, other;
    HFSUniStr(name);
    inOther.HFSUniStr(other);
    const SInt32 order =
        FinderCompare(name.length, name.unicode, other.length, other.unicode, false, true);
    return !inStrict && std::abs(order) == 1 ? 0 : std::clamp(order, -1, 1);
}

TCFString TCFString::PlugParams(const TCFString& inParam0, const TCFString& inParam1,
                                const TCFString& inParam2, const TCFString& inParam3) const {
    const TCFString* params[] = {&inParam0, &inParam1, &inParam2, &inParam3};
    TCFString text = *this;
    for (int i = 0; i < 4; ++i) {
        // Kept: an empty text leaves its mark where it is, and only the first mark is replaced.
        if (*params[i] != Empty) text = text.ReplaceSubstring(Caret(i), *params[i], 0);
    }
    return text;
}
