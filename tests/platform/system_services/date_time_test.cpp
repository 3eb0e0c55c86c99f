// The clock of dates.
#include <Carbon/DateTimeUtils.h>
#include <gtest/gtest.h>
#include <time.h>

namespace {

UInt32 Now() {
    UInt32 seconds = 0;
    GetDateTime(&seconds);
    return seconds;
}

class LocalClock : public ::testing::Test {
  protected:
    void SetUp() override {
        if (const char* zone = getenv("TZ")) mZone = zone;
    }
    void TearDown() override {
        mZone.empty() ? unsetenv("TZ") : setenv("TZ", mZone.c_str(), 1);
        tzset();
    }
    static UInt32 NowIn(const char* inZone) {
        setenv("TZ", inZone, 1);
        tzset();
        return Now();
    }

  private:
    std::string mZone;
};

TEST_F(LocalClock, Counts66YearsAnd17LeapDaysMoreThanUnix) {
    const UInt32 before = UInt32(time(nullptr));
    const UInt32 now = NowIn("UTC0");
    const UInt32 after = UInt32(time(nullptr));
    EXPECT_GE(now - (66 * 365 + 17) * 86400u, before);
    EXPECT_LE(now - (66 * 365 + 17) * 86400u, after);
}

TEST_F(LocalClock, IsAheadInTheEast) {
    const UInt32 greenwich = NowIn("UTC0");
    const UInt32 east = NowIn("EAST-5:30");
    EXPECT_GE(east - greenwich, 19800u);
    EXPECT_LE(east - greenwich, 19810u);
}

}  // namespace
