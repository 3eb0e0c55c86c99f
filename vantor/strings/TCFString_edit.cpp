// Searching, editing and comparing.
#include "vantor/strings/TCFString.h"

namespace {

// A copy that can change, for one edit.
class Editing {
  public:
    explicit Editing(const TCFString& inString)
        : mCopy(CFStringCreateMutableCopy(nullptr, 0, inString.StringRef())) {}
    ~Editing() {
        if (mCopy != nullptr) CFRelease(mCopy);
    }
    Editing(const Editing&) = delete;
    Editing& operator=(const Editing&) = delete;

    explicit operator bool() const { return mCopy != nullptr; }
    CFMutableStringRef Get() const { return mCopy; }

    TCFString Result() const {
        TCFString result;
        if (mCopy != nullptr) result.Adopt(CFStringCreateCopy(nullptr, mCopy));
        return result;
    }

  private:
    CFMutableStringRef mCopy;
};

template <typename Change>
TCFString Changed(const TCFString& inString, Change inChange) {
    const Editing copy(inString);
    if (copy) inChange(copy.Get());
    return copy.Result();
}

bool IsNegative(const CFRange& inRange) {
    return inRange.location < 0 || inRange.length < 0;
}

}  // namespace

CFRange TCFString::Find(const TCFString& inText, CFOptionFlags inOptions) const {
    return CFStringFind(mString, inText.mString, inOptions);
}

CFRange TCFString::FindInRange(CFRange inRange, const TCFString& inText,
                               CFOptionFlags inOptions) const {
    CFRange found = CFRangeMake(kCFNotFound, -1);
    CFStringFindWithOptions(mString, inText.mString, CheckRange(inRange), inOptions, &found);
    return found;
}

bool TCFString::HasPrefix(const TCFString& inPrefix, bool inIgnoreCase) const {
    if (inPrefix.Length() > Length()) return false;
    const CFOptionFlags options = inIgnoreCase ? kCFCompareCaseInsensitive : 0;
    return Substring(0, inPrefix.Length()).CompareTo(inPrefix, options) == kCFCompareEqualTo;
}

bool TCFString::HasSuffix(const TCFString& inSuffix) const {
    constexpr CFOptionFlags kAtEnd =
        kCFCompareCaseInsensitive | kCFCompareBackwards | kCFCompareAnchored;
    return Find(inSuffix, kAtEnd).location != kCFNotFound;
}

// Kept: a range that begins before the text gets longer by what it lacks there, and one that begins
// behind it stands on the last unit, which in an empty text is -1. Callers clip with these results.
CFRange TCFString::CheckRange(const CFRange& inRange) const {
    const SInt64 textLength = Length();
    SInt64 location = inRange.location, length = inRange.length;
    if (location < 0) {
        length -= location;
        location = 0;
    } else if (location >= textLength) {
        location = textLength - 1;
        length = 0;
    }
    if (length < 0)
        length = 0;
    else if (location + length > textLength)
        length = textLength - location;
    return CFRangeMake(static_cast<CFIndex>(location), static_cast<CFIndex>(length));
}

TCFString TCFString::Replace(const CFRange& inRange, const TCFString& inWith) const {
    if (IsNegative(inRange)) return *this;
    return Changed(*this, [&](CFMutableStringRef ioCopy) {
        CFStringReplace(ioCopy, CheckRange(inRange), inWith.mString);
    });
}

TCFString TCFString::ReplaceSubstring(const TCFString& inFind, const TCFString& inWith,
                                      CFOptionFlags inOptions) const {
    const CFRange found = Find(inFind, inOptions);
    return found.location == kCFNotFound ? *this : Replace(found, inWith);
}

TCFString TCFString::FindAndReplace(const TCFString& inFind, const TCFString& inWith,
                                    CFRange inRange, CFOptionFlags inOptions) const {
    const Editing copy(*this);
    if (IsNegative(inRange) || !copy) return *this;
    const CFIndex count = CFStringFindAndReplace(copy.Get(), inFind.mString, inWith.mString,
                                                 CheckRange(inRange), inOptions);
    return count == 0 ? *this : copy.Result();
}

TCFString TCFString::Substring(CFIndex inLocation, CFIndex inLength) const {
    TCFString part;
    part.Adopt(CFStringCreateWithSubstring(nullptr, mString, CFRangeMake(inLocation, inLength)));
    return part;
}

TCFString TCFString::Capitalize() const {
    return Changed(*this, [](CFMutableStringRef ioCopy) { CFStringCapitalize(ioCopy, nullptr); });
}

TCFString TCFString::Uppercase() const {
    return Changed(*this, [](CFMutableStringRef ioCopy) { CFStringUppercase(ioCopy, nullptr); });
}

TCFString TCFString::Lowercase() const {
    return Changed(*this, [](CFMutableStringRef ioCopy) { CFStringLowercase(ioCopy, nullptr); });
}

TCFString TCFString::Normalize(CFStringNormalizationForm inForm) const {
    return Changed(*this, [&](CFMutableStringRef ioCopy) { CFStringNormalize(ioCopy, inForm); });
}

CFComparisonResult TCFString::CompareTo(const TCFString& inOther, CFOptionFlags inOptions) const {
    return CFStringCompare(mString, inOther.mString, inOptions);
}

bool TCFString::operator!=(const TCFString& inOther) const {
    return mString != inOther.mString && CompareTo(inOther, 0) != kCFCompareEqualTo;
}
