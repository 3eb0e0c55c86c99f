// What address checking finds in blocks: only sanitized builds have these tests.
#include <Carbon/MacMemory.h>
#include <gtest/gtest.h>

#include "posix/address_sanitizer.h"

#ifdef PLATFORM_CHECKS_ADDRESSES
namespace {

TEST(AddressChecksDeathTest, SeeAWriteBehindABlockThatHasRoomToGrow) {
    const Handle handle = NewHandle(64);
    SetHandleSize(handle, 65);
    ASSERT_NE(*handle, nullptr);
    volatile char* const bytes = *handle;
    bytes[64] = 1;
    EXPECT_DEATH(bytes[72] = 1, "AddressSanitizer");
    SetHandleSize(handle, 80);
    bytes[72] = 1;
    DisposeHandle(handle);
}

TEST(AddressChecksDeathTest, SeeAWriteBehindAFixedBlock) {
    const Ptr pointer = NewPtr(24);
    volatile char* const bytes = pointer;
    EXPECT_DEATH(bytes[24] = 1, "AddressSanitizer");
    DisposePtr(pointer);
}

}  // namespace
#endif
