// Owns the clock that tells the local date and time.
#include <Carbon/DateTimeUtils.h>
#include <time.h>

void GetDateTime(UInt32* secs) {
    constexpr SInt64 kFrom1904To1970 = 2082844800;
    const time_t now = time(nullptr);
    tm local;
    localtime_r(&now, &local);
    *secs = UInt32(now + local.tm_gmtoff + kFrom1904To1970);
}
