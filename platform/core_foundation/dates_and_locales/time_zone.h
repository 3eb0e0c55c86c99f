// A time zone as an object, and the one of the process.
#pragma once

#include <CoreFoundation/CFTimeZone.h>
#include <unicode/timezone.h>

#include <memory>

#include "core_foundation/object.h"

struct __CFTimeZone : carbon::Object {
    explicit __CFTimeZone(std::unique_ptr<icu::TimeZone> inZone);

    bool Equals(const Object& inOther) const final;
    CFHashCode Hash() const final;
    std::u16string Describe() const final;

    const std::unique_ptr<icu::TimeZone> mZone;
    const carbon::Owned<CFStringRef> mName;

  protected:
    ~__CFTimeZone() = default;
};

namespace carbon {

// ICU's form of an object that may be null or no time zone: GMT then.
const icu::TimeZone& IcuTimeZone(CFTimeZoneRef inZone);

// Whole milliseconds as ICU counts them; false for a time that is not a number or beyond any
// calendar.
bool ToIcuTime(CFAbsoluteTime inTime, UDate* outTime);
CFAbsoluteTime FromIcuTime(UDate inTime);

}  // namespace carbon
