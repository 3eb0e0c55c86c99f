// Sending when memory runs out at any step of it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "support/EventPeer.h"
#include "support/TestEvents.h"

namespace {

thread_local int gUntilFailure = -1;  // allocations; none fails when negative

void* Allocate(std::size_t inSize) {
    if (gUntilFailure >= 0 && gUntilFailure-- == 0) throw std::bad_alloc();
    if (void* bytes = std::malloc(inSize == 0 ? 1 : inSize)) return bytes;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t inSize) {
    return Allocate(inSize);
}
void operator delete(void* inBytes) noexcept {
    std::free(inBytes);
}
void operator delete(void* inBytes, std::size_t) noexcept {
    std::free(inBytes);
}

namespace {

struct Answered {
    OSErr err;
    SInt32 value;
};

Answered Ask(const AppleEvent& inEvent) {
    OwnedDesc reply;
    const OSErr err =
        AESend(&inEvent, &reply, kAEWaitReply, kAENormalPriority, 600, nullptr, nullptr);
    return {err, err == noErr ? LongIn(reply, keyDirectObject) : 0};
}

// Whether some allocation of a first send to a new server failed; it must be told, and the next
// send must go well.
bool FailsWhenAllocationFails(int inNumber) {
    EventPeer server = StartServer();
    OwnedDesc event;
    EXPECT_EQ(MakeEvent(server.Psn(), 'echo', &event), noErr);
    EXPECT_EQ(PutLong(&event, keyDirectObject, inNumber), noErr);
    gUntilFailure = inNumber;
    const Answered first = Ask(event);
    const bool hasFailed = gUntilFailure < 0;
    gUntilFailure = -1;
    // A reply that there is no memory for ends the connection it came on.
    const bool isTold = first.err == memFullErr || first.err == connectionInvalid;
    EXPECT_EQ(isTold, hasFailed) << inNumber << ": " << first.err;
    const Answered second = Ask(event);
    EXPECT_EQ(second.err, noErr) << inNumber;
    EXPECT_EQ(second.value, inNumber);
    return hasFailed;
}

TEST(SendWithoutMemory, IsToldAndTheNextSendGoesWell) {
    int number = 0;
    while (number < 100 && FailsWhenAllocationFails(number)) ++number;
    EXPECT_GT(number, 2) << "connecting and awaiting take memory";
    EXPECT_LT(number, 100);
}

}  // namespace
