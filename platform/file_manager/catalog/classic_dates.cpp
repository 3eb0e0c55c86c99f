// Owns the way between Unix time and seconds since 1904 in local time.
#include "file_manager/catalog/classic_dates.h"

#include <time.h>

#include <algorithm>
#include <array>

namespace carbon {

namespace {

constexpr SInt64 kUnixEpoch = 2082844800;  // seconds from 1904 to 1970
constexpr SInt64 kLatest = 0xFFFFFFFF;
constexpr SInt64 kSlot = 900;  // every change of local time falls on a quarter of an hour

SInt64 OffsetAt(SInt64 inUnixTime) {
    const time_t time = inUnixTime;
    tm local;
    return localtime_r(&time, &local) ? local.tm_gmtoff : 0;
}

struct Remembered {
    SInt64 slot = -1;
    SInt64 offset = 0;
    long zone = 0;  // a program may change its time zone
};

// Files of one folder often have dates of few hours, and asking the system takes long.
SInt64 RememberedOffsetAt(SInt64 inUnixTime) {
    constexpr size_t kPlaces = 64;
    thread_local std::array<Remembered, kPlaces> sOffsets;
    const SInt64 slot = inUnixTime / kSlot;
    Remembered& place = sOffsets[size_t(slot) % kPlaces];
    if (slot != place.slot || place.zone != timezone)
        place = {slot, OffsetAt(inUnixTime), timezone};
    return place.offset;
}

}  // namespace

UInt32 ClassicDate(SInt64 inUnixTime) {
    const SInt64 date = inUnixTime + kUnixEpoch + RememberedOffsetAt(inUnixTime);
    return UInt32(std::clamp(date, SInt64(0), kLatest));
}

// The offset is that of the moment meant, which lies within a day of the local time read as UTC.
std::optional<SInt64> UnixTimeOfClassicDate(UInt32 inDate) {
    if (inDate == 0) return std::nullopt;
    const SInt64 asUtc = SInt64(inDate) - kUnixEpoch;
    const SInt64 near = asUtc - OffsetAt(asUtc);
    return asUtc - OffsetAt(near);
}

}  // namespace carbon
