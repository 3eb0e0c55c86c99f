// Moments.
#include <CoreFoundation/CFDate.h>

#include <chrono>
#include <cmath>

#include "core_foundation/object.h"

struct __CFDate : carbon::Object {
    explicit __CFDate(CFAbsoluteTime inTime) : Object(carbon::kDateKind), mTime(inTime) {}

    bool Equals(const Object& inOther) const final {
        return mTime == static_cast<const __CFDate&>(inOther).mTime;
    }
    CFHashCode Hash() const final {
        const double time = mTime == 0 ? 0 : mTime;
        return carbon::HashOfBytes(&time, sizeof time);
    }
    std::u16string Describe() const final;

    const CFAbsoluteTime mTime;

  protected:
    ~__CFDate() = default;
};

namespace carbon {

namespace {

class Date final : public __CFDate {
  public:
    using __CFDate::__CFDate;

  private:
    void Destroy() const override { delete this; }
};

CFAbsoluteTime TimeOf(CFDateRef inDate) {
    const auto* date = OfKind<__CFDate>(inDate, kDateKind);
    return date ? date->mTime : 0;
}

}  // namespace

}  // namespace carbon

// "2004-10-20 21:20:00 +0000"; seconds alone for a time that no calendar year holds.
std::u16string __CFDate::Describe() const {
    char text[64];
    const double seconds = std::floor(mTime) + kCFAbsoluteTimeIntervalSince1970;
    std::tm parts{};
    const auto time = static_cast<time_t>(std::abs(seconds) < 1e15 ? seconds : 0);
    if (std::abs(seconds) < 1e15 && gmtime_r(&time, &parts)) {
        const size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S +0000", &parts);
        return std::u16string(text, text + length);
    }
    const int length = std::snprintf(text, sizeof text, "%g s", mTime);
    return std::u16string(text, text + length);
}

const CFTimeInterval kCFAbsoluteTimeIntervalSince1970 = 978307200.0;
const CFTimeInterval kCFAbsoluteTimeIntervalSince1904 = 3061152000.0;

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
    const std::chrono::duration<double> now = std::chrono::system_clock::now().time_since_epoch();
    return now.count() - kCFAbsoluteTimeIntervalSince1970;
}

CFTypeID CFDateGetTypeID() {
    return carbon::kDateKind;
}

CFDateRef CFDateCreate(CFAllocatorRef, CFAbsoluteTime at) {
    return new (std::nothrow) carbon::Date(at);
}

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef theDate) {
    return carbon::TimeOf(theDate);
}

CFTimeInterval CFDateGetTimeIntervalSinceDate(CFDateRef theDate, CFDateRef otherDate) {
    return carbon::TimeOf(theDate) - carbon::TimeOf(otherDate);
}

CFComparisonResult CFDateCompare(CFDateRef theDate, CFDateRef otherDate, void*) {
    const CFTimeInterval interval = CFDateGetTimeIntervalSinceDate(theDate, otherDate);
    return (interval > 0) - (interval < 0);
}
