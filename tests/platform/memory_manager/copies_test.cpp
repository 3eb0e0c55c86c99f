// Handles made from bytes and from each other.
#include "platform/memory_manager/handle_support.h"

namespace {

TEST(HandToHand, MakesAPlainCopyOfItsOwn) {
    const Handle original = FromText("text");
    HSetState(original, SInt8(0xE0));
    Handle copy = original;
    EXPECT_EQ(HandToHand(&copy), noErr);
    EXPECT_NE(copy, original);
    EXPECT_EQ(TextOf(copy), "text");
    EXPECT_EQ(HGetState(copy), 0);
    (*copy)[0] = 'n';
    EXPECT_EQ(TextOf(original), "text");
    DisposeHandle(copy);
    DisposeHandle(original);
}

TEST(HandToHand, CopiesABlockOfNoBytes) {
    const Handle original = NewHandle(0);
    Handle copy = original;
    EXPECT_EQ(HandToHand(&copy), noErr);
    EXPECT_EQ(GetHandleSize(copy), 0);
    EXPECT_NE(*copy, nullptr);
    DisposeHandle(copy);
    DisposeHandle(original);
}

TEST(HandToHand, KeepsTheVariableOnAnError) {
    Handle none = nullptr;
    EXPECT_EQ(HandToHand(&none), nilHandleErr);
    EXPECT_EQ(MemError(), nilHandleErr);
    const Handle empty = NewEmptyHandle();
    Handle variable = empty;
    EXPECT_EQ(HandToHand(&variable), nilHandleErr);
    EXPECT_EQ(variable, empty);
    DisposeHandle(empty);
    EXPECT_EQ(HandToHand(&variable), memWZErr);
    EXPECT_EQ(variable, empty);
    EXPECT_EQ(MemError(), memWZErr);
}

TEST(PtrToHand, FailsWithoutAHandle) {
    Ptr somewhere = nullptr;
    Handle handle = &somewhere;
    EXPECT_EQ(PtrToHand("x", &handle, -1), memFullErr);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(PtrToHand(nullptr, &handle, 1), paramErr);
    EXPECT_EQ(handle, nullptr);
    EXPECT_EQ(PtrToHand("x", nullptr, 1), paramErr);
    EXPECT_EQ(MemError(), paramErr);
    EXPECT_EQ(PtrToHand(nullptr, &handle, 0), noErr);
    EXPECT_EQ(GetHandleSize(handle), 0);
    DisposeHandle(handle);
}

TEST(PtrToXHand, ReplacesTheContents) {
    const Handle handle = FromText("old contents");
    EXPECT_EQ(PtrToXHand("new", handle, 3), noErr);
    EXPECT_EQ(TextOf(handle), "new");
    EXPECT_EQ(PtrToXHand("a good deal longer than before", handle, 30), noErr);
    EXPECT_EQ(TextOf(handle), "a good deal longer than before");
    DisposeHandle(handle);
}

TEST(PtrToXHand, TakesAPartOfTheBlockItself) {
    const Handle handle = FromText("0123456789");
    EXPECT_EQ(PtrToXHand(*handle + 3, handle, 4), noErr);
    EXPECT_EQ(TextOf(handle), "3456");
    EXPECT_EQ(PtrToXHand(*handle + 2, handle, 3), paramErr) << "runs over the end";
    EXPECT_EQ(TextOf(handle), "3456");
    DisposeHandle(handle);
}

TEST(PtrToXHand, KeepsTheContentsOnAnError) {
    const Handle handle = FromText("kept");
    EXPECT_EQ(PtrToXHand("x", handle, -1), memFullErr);
    EXPECT_EQ(PtrToXHand(nullptr, handle, 1), paramErr);
    HLock(handle);
    EXPECT_EQ(PtrToXHand("far too long to stand here", handle, 26), memFullErr);
    EXPECT_EQ(TextOf(handle), "kept");
    DisposeHandle(handle);
    EXPECT_EQ(PtrToXHand("x", handle, 1), memWZErr);
    EXPECT_EQ(PtrToXHand("x", nullptr, 1), nilHandleErr);
}

TEST(PtrAndHand, AppendsAlsoFromTheBlockItself) {
    const Handle handle = FromText("ab");
    EXPECT_EQ(PtrAndHand("cd", handle, 2), noErr);
    for (int i = 0; i < 6; ++i) {
        const std::string before = TextOf(handle);
        EXPECT_EQ(PtrAndHand(*handle + 1, handle, Size(before.size()) - 1), noErr);
        EXPECT_EQ(TextOf(handle), before + before.substr(1));
    }
    EXPECT_EQ(PtrAndHand(nullptr, handle, 0), noErr);
    EXPECT_EQ(PtrAndHand(nullptr, handle, 1), paramErr);
    EXPECT_EQ(PtrAndHand("x", handle, INT32_MAX), memFullErr);
    EXPECT_EQ(PtrAndHand("x", handle, -1), memFullErr);
    EXPECT_EQ(PtrAndHand("x", nullptr, 1), nilHandleErr);
    DisposeHandle(handle);
    EXPECT_EQ(PtrAndHand("x", handle, 1), memWZErr);
}

TEST(HandAndHand, AppendsTheFirstToTheSecond) {
    const Handle first = FromText("tail"), second = FromText("head ");
    EXPECT_EQ(HandAndHand(first, second), noErr);
    EXPECT_EQ(TextOf(first), "tail");
    EXPECT_EQ(TextOf(second), "head tail");
    EXPECT_EQ(HandAndHand(second, second), noErr);
    EXPECT_EQ(TextOf(second), "head tailhead tail");
    EXPECT_EQ(HandAndHand(nullptr, second), nilHandleErr);
    EXPECT_EQ(HandAndHand(second, nullptr), nilHandleErr);
    EXPECT_EQ(HandAndHand(second, Disposed()), memWZErr);
    DisposeHandle(first);
    DisposeHandle(second);
}

TEST(BlockMove, CopiesOverlappingAreasAndSetsNoError) {
    char text[] = "abcdef";
    LMSetMemErr(memPurErr);
    BlockMove(text, text + 2, 4);
    EXPECT_STREQ(text, "ababcd");
    BlockMoveData(text + 2, text, 4);
    EXPECT_STREQ(text, "abcdcd");
    BlockMove(text, text + 3, 0);
    BlockMoveData(text, text + 3, -5);
    BlockZero(text, -1);
    EXPECT_STREQ(text, "abcdcd");
    BlockZero(text, 6);
    EXPECT_EQ(std::string(text, 6), std::string(6, '\0'));
    EXPECT_EQ(MemError(), memPurErr);
}

}  // namespace
