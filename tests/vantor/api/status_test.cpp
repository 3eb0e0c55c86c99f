// How exceptions become codes, and what out pointers get.
#include "vantor/api/Status.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

namespace {

[[noreturn]] SInt32 ThrowOurs() {
    LException::Throw(-1728);
}

[[noreturn]] SInt32 ThrowAnother() {
    throw std::bad_alloc();
}

TEST(Status, IsZeroTheCodeOrMinus11000) {
    EXPECT_EQ(Status([] {}), 0);
    EXPECT_EQ(Status(ThrowOurs), -1728);
    EXPECT_EQ(Status(ThrowAnother), -11000);
    EXPECT_EQ(Status([] { throw 5; }), -11000);
}

TEST(Status, StoresAResultOnlyAfterSuccess) {
    SInt32 result = 7;
    EXPECT_EQ(StatusWithResult(&result, ThrowOurs), -1728);
    EXPECT_EQ(StatusWithResult(&result, ThrowAnother), -11000);
    EXPECT_EQ(result, 7);
    EXPECT_EQ(StatusWithResult(&result, [] { return SInt32{9}; }), 0);
    EXPECT_EQ(result, 9);
    bool called = false;
    EXPECT_EQ(StatusWithResult<SInt32>(nullptr, [&] { return called = true, SInt32{9}; }), 0);
    EXPECT_TRUE(called) << "only the storing is left out";
}

TEST(Status, HidesAnyFailureAsFalse) {
    EXPECT_EQ(Answer([] { return Boolean{1}; }), 1);
    EXPECT_EQ(Answer([]() -> Boolean { LException::Throw(-1); }), 0);
    EXPECT_EQ(Answer([]() -> Boolean { throw 5; }), 0);
}

TEST(Status, LeavesABlankDiscsOutcomeAloneAfterAForeignException) {
    SInt32 info = 7;
    EXPECT_EQ(BlankDiscStatus(&info, ThrowAnother), -11000);
    EXPECT_EQ(BlankDiscStatus(&info, ThrowOurs), -1728);
    EXPECT_EQ(info, 7);
}

}  // namespace
