// Making and owning.
#include "vantor/strings/TCFString.h"

#include <cstdarg>

namespace {

// What a string was made from, given back at the end of a scope.
template <typename Ref>
class StReference {
  public:
    explicit StReference(Ref inRef) : mRef(inRef) {}
    ~StReference() {
        if (mRef != nullptr) CFRelease(mRef);
    }
    StReference(const StReference&) = delete;
    StReference& operator=(const StReference&) = delete;
    operator Ref() const { return mRef; }

  private:
    Ref mRef;
};

CFStringRef NewMomentText(CFAbsoluteTime inTime, CFDateFormatterStyle inDateStyle,
                          CFDateFormatterStyle inTimeStyle) {
    const StReference<CFLocaleRef> locale(CFLocaleCopyCurrent());
    const StReference<CFDateFormatterRef> formatter(
        CFDateFormatterCreate(nullptr, locale, inDateStyle, inTimeStyle));
    if (formatter == nullptr) return nullptr;
    return CFDateFormatterCreateStringWithAbsoluteTime(nullptr, formatter, inTime);
}

TCFString Adopted(CFStringRef inString) {
    TCFString string;
    string.Adopt(inString);
    return string;
}

}  // namespace

const TCFString TCFString::Empty;
const unsigned char TCFString::kCannotDisplayString[] = "\x10<CANNOT DISPLAY>";
const char TCFString::kCannotDisplayCString[] = "<CANNOT DISPLAY>";
const TCFString TCFString::kCannotDisplayCFString(kCannotDisplayString, DefaultEncoding());

TCFString::TCFString() : mString(nullptr) {
    EnsureNonNullRef();
}

TCFString::TCFString(const TCFString& inOther) : mString(inOther.Retain()) {}

TCFString& TCFString::operator=(const TCFString& inOther) {
    if (mString != inOther.mString) Adopt(inOther.Retain());
    return *this;
}

TCFString::TCFString(CFStringRef inString) : mString(inString) {
    if (mString != nullptr) CFRetain(mString);
    EnsureNonNullRef();
}

TCFString::TCFString(const char* inCString, CFStringEncoding inEncoding)
    : mString(inCString ? CFStringCreateWithCString(nullptr, inCString, inEncoding) : nullptr) {
    EnsureNonNullRef();
}

TCFString::TCFString(ConstStr255Param inString, CFStringEncoding inEncoding)
    : mString(inString ? CFStringCreateWithPascalString(nullptr, inString, inEncoding) : nullptr) {
    EnsureNonNullRef();
}

TCFString::TCFString(CFAbsoluteTime inTime, CFDateFormatterStyle inDateStyle,
                     CFDateFormatterStyle inTimeStyle)
    : mString(NewMomentText(inTime, inDateStyle, inTimeStyle)) {
    EnsureNonNullRef();
}

TCFString::~TCFString() {
    CFRelease(mString);
}

void TCFString::EnsureNonNullRef() {
    if (mString == nullptr) mString = static_cast<CFStringRef>(CFRetain(EmptyCFString()));
}

void TCFString::Adopt(CFStringRef inString) {
    if (inString == mString) return;
    CFRelease(mString);
    mString = inString;
    EnsureNonNullRef();
}

TCFString TCFString::WithBytes(const UInt8* inBytes, CFIndex inCount, CFStringEncoding inEncoding,
                               Boolean inIsExternalRepresentation) {
    return Adopted(
        CFStringCreateWithBytes(nullptr, inBytes, inCount, inEncoding, inIsExternalRepresentation));
}

TCFString TCFString::CFPrintf(CFStringRef inFormat, ...) {
    va_list arguments;
    va_start(arguments, inFormat);
    TCFString string =
        Adopted(CFStringCreateWithFormatAndArguments(nullptr, nullptr, inFormat, arguments));
    va_end(arguments);
    return string;
}

TCFString operator+(const TCFString& inLeft, const TCFString& inRight) {
    static const TCFString format("%@%@", kCFStringEncodingASCII);
    return Adopted(CFStringCreateWithFormat(nullptr, nullptr, format.StringRef(),
                                            inLeft.StringRef(), inRight.StringRef()));
}

CFStringRef TCFString::Retain() const {
    return static_cast<CFStringRef>(CFRetain(mString));
}

CFStringEncoding TCFString::DefaultEncoding() {
    static const CFStringEncoding sDefaultEncoding = GetApplicationTextEncoding();
    return sDefaultEncoding;
}

CFStringRef TCFString::EmptyCFString() {
    return CFSTR("");
}
