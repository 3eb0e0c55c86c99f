// The memory of a form: short and long, moved, and lent in parts.
#include "apple_event_manager/data/buffer.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

using carbon::Buffer;

constexpr size_t kShort = 10, kLong = 10'000;

// Bytes that differ from place to place.
std::string Pattern(size_t inSize) {
    std::string pattern(inSize, '\0');
    for (size_t i = 0; i < inSize; ++i) pattern[i] = static_cast<char>(i * 7 + i / 256);
    return pattern;
}

Buffer BufferOf(const std::string& inText) {
    return Buffer(std::span(reinterpret_cast<const UInt8*>(inText.data()), inText.size()));
}

std::string Text(const Buffer& inBuffer) {
    return {reinterpret_cast<const char*>(inBuffer.Data()), inBuffer.Size()};
}

TEST(Buffer, KeepsItsBytesWhenItIsMoved) {
    for (const size_t size : {kShort, kLong}) {
        Buffer first = BufferOf(Pattern(size));
        Buffer second = std::move(first);
        EXPECT_EQ(Text(second), Pattern(size));
        EXPECT_EQ(first.Size(), 0u);
        first = std::move(second);
        EXPECT_EQ(Text(first), Pattern(size));
    }
}

TEST(Buffer, SplicesAnywhereWhileItOutgrowsItself) {
    Buffer buffer;
    std::string model;
    for (size_t i = 0; i < 300; ++i) {
        const size_t at = i * 31 % (model.size() + 1),
                     old = std::min<size_t>(i % 3, model.size() - at);
        const std::string text = Pattern(i % 50);
        buffer.Splice(at, old, text.size());
        std::copy(text.begin(), text.end(), buffer.Writable() + at);
        model.replace(at, old, text);
        ASSERT_EQ(Text(buffer), model) << i;
    }
}

TEST(Buffer, LendsALongPartWithoutACopyAndAShortOneAsACopy) {
    Buffer whole = BufferOf(Pattern(kLong));
    const Buffer part = whole.Part(100, 9000), little = whole.Part(100, 9);
    EXPECT_EQ(part.Data(), whole.Data() + 100);
    EXPECT_NE(little.Data(), whole.Data() + 100);
    EXPECT_EQ(Text(part), Pattern(kLong).substr(100, 9000));
    EXPECT_EQ(Text(little), Pattern(kLong).substr(100, 9));
}

TEST(Buffer, LenderAndBorrowerChangeApart) {
    Buffer whole = BufferOf(Pattern(kLong));
    Buffer part = whole.Part(0, 9000);
    whole.Writable()[0] = 'w';
    part.Writable()[0] = 'p';
    EXPECT_EQ(Text(whole)[0], 'w');
    EXPECT_EQ(Text(part)[0], 'p');
    EXPECT_EQ(Text(whole).substr(1), Pattern(kLong).substr(1));
    EXPECT_EQ(Text(part).substr(1), Pattern(kLong).substr(1, 8999));
}

TEST(Buffer, PartOutlivesTheWholeAndItsOwnPart) {
    Buffer part;
    {
        Buffer whole = BufferOf(Pattern(kLong));
        Buffer middle = whole.Part(10, 9900);
        part = middle.Part(10, 9000);
    }
    EXPECT_EQ(Text(part), Pattern(kLong).substr(20, 9000));
    part.Splice(9000, 0, 5);
    EXPECT_EQ(Text(part).substr(0, 9000), Pattern(kLong).substr(20, 9000));
}

TEST(Buffer, GrowsAgainWhereItIsOnceNobodyBorrows) {
    Buffer whole = BufferOf(Pattern(kLong));
    whole.Part(0, 9000);
    whole.Splice(kLong, 0, 1);
    EXPECT_EQ(Text(whole).substr(0, kLong), Pattern(kLong));
}

}  // namespace
