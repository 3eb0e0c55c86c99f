// The exception class: its code, its message, and what a C string of 255 characters loses.
#include "vantor/foundation/LException.h"

#include <gtest/gtest.h>

#include "support/PascalString.h"
#include "support/Thrown.h"

namespace {

// Programs built against the library rely on the order of the fields: code, then message.
struct ExceptionLayout : LException {
    using LException::LException;
    long CodeOffset() const { return Offset(&mErrorCode); }
    long MessageOffset() const { return Offset(&mErrorString); }

  private:
    long Offset(const void* inField) const {
        return static_cast<const char*>(inField) - reinterpret_cast<const char*>(this);
    }
};

TEST(LException, HoldsTheCodeRightBeforeTheMessage) {
    const ExceptionLayout exception(-1, nullptr);
    EXPECT_EQ(exception.CodeOffset(), static_cast<long>(sizeof(void*)));
    EXPECT_EQ(exception.MessageOffset(), exception.CodeOffset() + 4);
    EXPECT_LE(exception.MessageOffset() + 256, static_cast<long>(sizeof exception));
}

TEST(LException, HasAnEmptyMessageWithoutOne) {
    const LException exception(-50, nullptr);
    EXPECT_EQ(exception.GetErrorCode(), -50);
    EXPECT_STREQ(exception.what(), "");
}

TEST(LException, GivesItsMessageAsACString) {
    EXPECT_STREQ(LException(-1, PString("no room")).what(), "no room");
}

TEST(LException, KeepsLosingTheLastOf255Characters) {
    const std::string text(254, 'a');
    const LException exception(-1, PString(text + "b"));
    EXPECT_EQ(exception.what(), text);
    EXPECT_EQ(exception.what(), text) << "asking twice must not shorten it further";
}

TEST(LException, Gives254CharactersWhole) {
    const std::string text(254, 'a');
    EXPECT_EQ(LException(-1, PString(text)).what(), text);
}

TEST(LException, CopiesCodeAndMessage) {
    const LException original(-43, PString("gone"));
    const LException copy(original);
    LException assigned(0, PString("a longer message than the other"));
    assigned = original;
    EXPECT_EQ(copy.GetErrorCode(), -43);
    EXPECT_STREQ(copy.what(), "gone");
    EXPECT_EQ(assigned.GetErrorCode(), -43);
    EXPECT_STREQ(assigned.what(), "gone");
}

TEST(LException, KeepsItsMessageWhenAssignedToItself) {
    LException exception(-43, PString("gone"));
    const LException& same = exception;
    exception = same;
    EXPECT_STREQ(exception.what(), "gone");
}

TEST(LException, TakesANewCodeAndMessage) {
    LException exception(-1, PString("before"));
    exception.SetErrorCode(-2);
    exception.SetErrorString(nullptr);
    EXPECT_EQ(exception.GetErrorCode(), -2);
    EXPECT_STREQ(exception.what(), "");
}

TEST(LException, ThrowsByValueWithTheMessageGiven) {
    try {
        LException::Throw(-192, PString("no such resource"));
        FAIL() << "comes back";
    } catch (const LException& exception) {
        EXPECT_EQ(exception.GetErrorCode(), -192);
        EXPECT_STREQ(exception.what(), "no such resource");
    }
    EXPECT_EQ(CodeThrownBy([] { LException::Throw(-600); }), -600);
}

TEST(LException, ThrowIfErrorLetsSuccessPassAndThrowsTheRest) {
    EXPECT_EQ(CodeThrownBy([] { ThrowIfError(noErr); }), std::nullopt);
    EXPECT_EQ(CodeThrownBy([] { ThrowIfError(-1701); }), -1701);
}

}  // namespace
