// Time zones: the computer's, the process's, and those known by name.
#include "core_foundation/dates_and_locales/time_zone.h"

#include <unicode/locid.h>
#include <unicode/simpletz.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <mutex>

#include "core_foundation/dates_and_locales/icu_text.h"
#include "posix/across_forks.h"

namespace carbon {

namespace {

icu::UnicodeString IdOf(const icu::TimeZone& inZone) {
    icu::UnicodeString id;
    return inZone.getID(id);
}

class TimeZone final : public __CFTimeZone {
  public:
    using __CFTimeZone::__CFTimeZone;

  private:
    void Destroy() const override { delete this; }
};

CFTimeZoneRef NewTimeZone(std::unique_ptr<icu::TimeZone> inZone) {
    return OrNull([&] { return new TimeZone(std::move(inZone)); });
}

bool IsKnown(const icu::TimeZone& inZone) {
    return IdOf(inZone) != IdOf(icu::TimeZone::getUnknown());
}

CFTimeZoneRef NewSystemTimeZone() {
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    if (!zone || !IsKnown(*zone)) zone.reset(icu::TimeZone::getGMT()->clone());
    return NewTimeZone(std::move(zone));
}

// The zones that calls without one use.
struct ProcessZones {
    std::mutex lock;
    Owned<CFTimeZoneRef> system, chosen;

    CFTimeZoneRef CopySystem() {
        const std::lock_guard guard(lock);
        if (!system) system = Owned<CFTimeZoneRef>(NewSystemTimeZone());
        return Owned<CFTimeZoneRef>::Share(system.Get()).Detach();
    }
};

ProcessZones& Zones() {
    static auto* zones = new ProcessZones;
    return *zones;
}

const HeldAcrossForks sHeld(Zones().lock);

CFTimeZoneRef CopyChosen() {
    const std::lock_guard guard(Zones().lock);
    return Owned<CFTimeZoneRef>::Share(Zones().chosen.Get()).Detach();
}

// Seconds ahead of GMT, in all and for daylight saving time.
struct Offset {
    double total = 0, saving = 0;
};

Offset OffsetAt(CFTimeZoneRef inZone, CFAbsoluteTime inTime) {
    UDate time = 0;
    int32_t raw = 0, saving = 0;
    UErrorCode error = U_ZERO_ERROR;
    ToIcuTime(inTime, &time);
    IcuTimeZone(inZone).getOffset(time, false, raw, saving, error);
    return {(raw + saving) / 1000.0, saving / 1000.0};
}

CFStringRef NewAbbreviation(CFTimeZoneRef inZone, CFAbsoluteTime inTime) {
    icu::UnicodeString name;
    IcuTimeZone(inZone).getDisplayName(OffsetAt(inZone, inTime).saving != 0, icu::TimeZone::SHORT,
                                       icu::Locale::getUS(), name);
    return NewString(name);
}

CFArrayRef NewNames() {
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::StringEnumeration> ids(
        icu::TimeZone::createTimeZoneIDEnumeration(UCAL_ZONE_TYPE_ANY, nullptr, nullptr, error));
    const Owned<CFMutableArrayRef> names(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    if (U_FAILURE(error) || !names) return nullptr;
    while (const icu::UnicodeString* id = ids->snext(error)) {
        const Owned<CFStringRef> name(NewString(*id));
        CFArrayAppendValue(names.Get(), name.Get());
    }
    return CFArrayCreateCopy(nullptr, names.Get());
}

// "EST", but not "GMT" or "Cuba".
bool IsAbbreviation(std::u16string_view inName) {
    if (inName == u"GMT" || inName == u"UTC") return false;
    const bool isInCapitals = std::all_of(
        inName.begin(), inName.end(), [](char16_t unit) { return unit >= u'A' && unit <= u'Z'; });
    return isInCapitals && inName.size() <= 4;
}

CFTimeZoneRef NewNamed(std::u16string_view inName, bool inTakesAbbreviation) {
    if (IsAbbreviation(inName) && !inTakesAbbreviation) return nullptr;
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(LentText(inName)));
    return zone && IsKnown(*zone) ? NewTimeZone(std::move(zone)) : nullptr;
}

}  // namespace

const icu::TimeZone& IcuTimeZone(CFTimeZoneRef inZone) {
    const auto* zone = inZone ? OfKind<__CFTimeZone>(inZone, kTimeZoneKind) : nullptr;
    return zone ? *zone->mZone : *icu::TimeZone::getGMT();
}

bool ToIcuTime(CFAbsoluteTime inTime, UDate* outTime) {
    constexpr double kFarthest = 8.64e15;  // 100 million days, as far as calendars are exact
    const double time = std::floor((inTime + kCFAbsoluteTimeIntervalSince1970) * 1000 + 0.5);
    if (!(std::abs(time) <= kFarthest)) return false;
    *outTime = time;
    return true;
}

CFAbsoluteTime FromIcuTime(UDate inTime) {
    return inTime / 1000 - kCFAbsoluteTimeIntervalSince1970;
}

}  // namespace carbon

__CFTimeZone::__CFTimeZone(std::unique_ptr<icu::TimeZone> inZone)
    : Object(carbon::kTimeZoneKind),
      mZone(std::move(inZone)),
      mName(carbon::NewString(carbon::IdOf(*mZone))) {}

bool __CFTimeZone::Equals(const Object& inOther) const {
    return *mZone == *static_cast<const __CFTimeZone&>(inOther).mZone;
}

CFHashCode __CFTimeZone::Hash() const {
    return CFHash(mName.Get());
}

std::u16string __CFTimeZone::Describe() const {
    return u"<CFTimeZone " + std::u16string(carbon::View(mName.Get())) + u">";
}

CFTypeID CFTimeZoneGetTypeID() {
    return carbon::kTimeZoneKind;
}

CFTimeZoneRef CFTimeZoneCopySystem() {
    return carbon::Zones().CopySystem();
}

void CFTimeZoneResetSystem() {
    const std::lock_guard guard(carbon::Zones().lock);
    carbon::Zones().system = carbon::Owned<CFTimeZoneRef>();
}

CFTimeZoneRef CFTimeZoneCopyDefault() {
    const CFTimeZoneRef chosen = carbon::CopyChosen();
    return chosen ? chosen : CFTimeZoneCopySystem();
}

void CFTimeZoneSetDefault(CFTimeZoneRef tz) {
    const std::lock_guard guard(carbon::Zones().lock);
    carbon::Zones().chosen = carbon::Owned<CFTimeZoneRef>::Share(tz);
}

CFArrayRef CFTimeZoneCopyKnownNames() {
    return carbon::OrNull([] { return carbon::NewNames(); });
}

CFTimeZoneRef CFTimeZoneCreateWithTimeIntervalFromGMT(CFAllocatorRef, CFTimeInterval ti) {
    constexpr double kDay = 24 * 60 * 60;
    if (!(std::abs(ti) <= kDay)) return nullptr;
    const auto minutes = static_cast<int>(std::abs(ti)) / 60;
    char name[16];
    std::snprintf(name, sizeof name, "GMT%c%02d:%02d", ti < 0 ? '-' : '+', minutes / 60,
                  minutes % 60);
    return carbon::NewTimeZone(std::make_unique<icu::SimpleTimeZone>(
        static_cast<int32_t>(ti * 1000), minutes == 0 ? "GMT" : name));
}

CFTimeZoneRef CFTimeZoneCreateWithName(CFAllocatorRef, CFStringRef name, Boolean tryAbbrev) {
    return carbon::OrNull([&] { return carbon::NewNamed(carbon::View(name), tryAbbrev); });
}

CFStringRef CFTimeZoneGetName(CFTimeZoneRef tz) {
    const auto* zone = carbon::OfKind<__CFTimeZone>(tz, carbon::kTimeZoneKind);
    return zone ? zone->mName.Get() : nullptr;
}

CFTimeInterval CFTimeZoneGetSecondsFromGMT(CFTimeZoneRef tz, CFAbsoluteTime at) {
    return carbon::OffsetAt(tz, at).total;
}

CFStringRef CFTimeZoneCopyAbbreviation(CFTimeZoneRef tz, CFAbsoluteTime at) {
    return carbon::OrNull([&] { return carbon::NewAbbreviation(tz, at); });
}

Boolean CFTimeZoneIsDaylightSavingTime(CFTimeZoneRef tz, CFAbsoluteTime at) {
    return carbon::OffsetAt(tz, at).saving != 0;
}
