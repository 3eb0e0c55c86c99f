// The bytes of a resource fork: what is written, what is read, what is refused.
#include "resource_manager/fork.h"

#include <Carbon/MacErrors.h>
#include <gtest/gtest.h>

#include <initializer_list>

namespace {

using carbon::BuildFork;
using carbon::ParseFork;
using carbon::StoredFork;
using Bytes = std::vector<UInt8>;

constexpr std::string_view kText = "some data";

std::span<const UInt8> DataOf(std::string_view inText) {
    return {reinterpret_cast<const UInt8*>(inText.data()), inText.size()};
}

StoredFork SmallFork() {
    StoredFork fork;
    fork.types.push_back({'TEXT', {{128, 0x20, "first", DataOf(kText)}, {-5, 0, "", DataOf("")}}});
    fork.types.push_back({'Othr', {{128, 0x08, "first", DataOf("x")}}});
    return fork;
}

Bytes SmallForkBytes() {
    Bytes bytes;
    EXPECT_EQ(BuildFork(SmallFork(), &bytes), noErr);
    return bytes;
}

void Put(Bytes& ioBytes, size_t inOffset, std::initializer_list<int> inBytes) {
    for (const int byte : inBytes) ioBytes.at(inOffset++) = UInt8(byte);
}

size_t MapOf(const Bytes& inBytes) {
    return size_t(inBytes[4] << 24 | inBytes[5] << 16 | inBytes[6] << 8 | inBytes[7]);
}

OSErr Parse(const Bytes& inBytes) {
    StoredFork fork;
    return ParseFork(inBytes, &fork);
}

TEST(BuildFork, MakesTheEmptyForkOf286Bytes) {
    Bytes bytes;
    ASSERT_EQ(BuildFork(StoredFork{}, &bytes), noErr);
    Bytes expected(286, 0);
    Put(expected, 0, {0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 30});
    Put(expected, 256, {0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 30});
    Put(expected, 280, {0, 28, 0, 30, 0xFF, 0xFF});
    EXPECT_EQ(bytes, expected);
}

TEST(ParseFork, ReadsWhatBuildForkWrote) {
    const Bytes bytes = SmallForkBytes();
    StoredFork fork;
    ASSERT_EQ(ParseFork(bytes, &fork), noErr);
    ASSERT_EQ(fork.types.size(), 2u);
    EXPECT_EQ(fork.types[0].type, ResType{'TEXT'});
    ASSERT_EQ(fork.types[0].resources.size(), 2u);
    const auto& first = fork.types[0].resources[0];
    EXPECT_EQ(first.id, 128);
    EXPECT_EQ(first.attributes, 0x20);
    EXPECT_EQ(first.name, "first");
    EXPECT_EQ(std::string(first.data.begin(), first.data.end()), kText);
    EXPECT_EQ(fork.types[0].resources[1].id, -5);
    EXPECT_TRUE(fork.types[0].resources[1].name.empty());
    EXPECT_EQ(fork.types[1].resources[0].attributes, 0x08);
    Bytes again;
    ASSERT_EQ(BuildFork(fork, &again), noErr);
    EXPECT_EQ(again, bytes);
}

TEST(BuildFork, KeepsAFrequentNameOnce) {
    const Bytes bytes = SmallForkBytes();
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_NE(text.find("first"), std::string::npos);
    EXPECT_EQ(text.find("first"), text.rfind("first"));
}

TEST(ParseFork, KeepsWhatLiesBetweenHeaderAndData) {
    Bytes bytes = SmallForkBytes();
    Put(bytes, 16, {1, 2, 3});
    Put(bytes, 255, {9});
    StoredFork fork;
    ASSERT_EQ(ParseFork(bytes, &fork), noErr);
    Bytes again;
    ASSERT_EQ(BuildFork(fork, &again), noErr);
    EXPECT_EQ(again, bytes);
}

TEST(ParseFork, FindsNoForkInNoBytes) {
    EXPECT_EQ(Parse({}), eofErr);
}

TEST(ParseFork, RefusesEveryForkThatWasCutOff) {
    const Bytes whole = SmallForkBytes();
    for (size_t length = 1; length < whole.size(); ++length) {
        EXPECT_EQ(Parse(Bytes(whole.begin(), whole.begin() + SInt64(length))), mapReadErr)
            << length;
    }
}

// Each of these points somewhere outside of where it belongs.
TEST(ParseFork, RefusesNumbersThatLeadOutside) {
    const Bytes good = SmallForkBytes();
    const size_t map = MapOf(good);
    const struct {
        const char* what;
        size_t at;
        std::initializer_list<int> bytes;
    } kWrong[] = {
        {"offset of the data", 0, {0xFF, 0xFF, 0xFF, 0xFF}},
        {"offset of the map", 4, {0x7F, 0xFF, 0xFF, 0xFF}},
        {"length of the data", 8, {0xFF, 0xFF, 0xFF, 0xFF}},
        {"length of the map", 12, {0, 1, 0, 0}},
        {"a map too short for its header", 12, {0, 0, 0, 29}},
        {"list of types", map + 24, {0xFF, 0xFE}},
        {"list of types at the end of the map", map + 24, {good[14], good[15]}},
        {"list of names", map + 26, {0xFF, 0xFF}},
        {"number of types", map + 28, {0x40, 0}},
        {"number of resources", map + 34, {0x10, 0}},
        {"references", map + 36, {0xFF, 0xF0}},
        {"name", map + 46 + 2, {0x70, 0}},
        {"data", map + 46 + 5, {0xFF, 0xFF, 0xFF}},
        {"length of the data of one", 256, {0xFF, 0xFF, 0xFF, 0xFF}},
    };
    for (const auto& wrong : kWrong) {
        Bytes bytes = good;
        Put(bytes, wrong.at, wrong.bytes);
        EXPECT_EQ(Parse(bytes), mapReadErr) << wrong.what;
    }
}

TEST(ParseFork, RefusesManyTypesThatShareTheirReferences) {
    // A thousand types that all claim the same thousand references.
    constexpr size_t kTypes = 1000, kTypeList = 256 + 28, kReferences = 2 + 8 * kTypes;
    Bytes bytes(kTypeList + kReferences + 12 * 1000 + 4, 0);
    const size_t length = bytes.size() - 256;
    Put(bytes, 0, {0, 0, 0, 16, 0, 0, 1, 0, 0, 0, 0, 4});
    Put(bytes, 12, {0, int(length >> 16), int(length >> 8), int(length & 0xFF)});
    Put(bytes, 256 + 24, {0, 28, int(length >> 8), int(length & 0xFF), 999 >> 8, 999 & 0xFF});
    for (size_t i = 0; i < kTypes; ++i) {
        Put(bytes, kTypeList + 2 + 8 * i,
            {'a', 'b', int(i >> 8), int(i & 0xFF), 999 >> 8, 999 & 0xFF, kReferences >> 8,
             kReferences & 0xFF});
    }
    for (size_t i = 0; i < 1000; ++i)
        Put(bytes, kTypeList + kReferences + 12 * i, {0, 1, 0xFF, 0xFF});
    EXPECT_EQ(Parse(bytes), mapReadErr);
}

TEST(ParseFork, TakesTwoResourcesThatShareTheirDataAndTheirName) {
    Bytes bytes = SmallForkBytes();
    const size_t first = MapOf(bytes) + 46;
    for (size_t i = 2; i < 8; ++i) bytes[first + 12 + i] = bytes[first + i];
    StoredFork fork;
    ASSERT_EQ(ParseFork(bytes, &fork), noErr);
    EXPECT_EQ(fork.types[0].resources[1].name, "first");
    EXPECT_EQ(fork.types[0].resources[1].data.size(), kText.size());
}

TEST(BuildFork, RefusesMoreThanTheFormatCanHold) {
    Bytes bytes;
    StoredFork fork;
    auto& resources = fork.types.emplace_back(carbon::StoredType{'Many', {}}).resources;
    for (int i = 0; i < 5458; ++i) resources.push_back({ResID(i), 0, "", {}});
    EXPECT_EQ(BuildFork(fork, &bytes), noErr);
    EXPECT_EQ(Parse(bytes), noErr);
    resources.push_back({5458, 0, "", {}});
    EXPECT_EQ(BuildFork(fork, &bytes), addRefFailed);

    fork = {};
    const Bytes large(0x1000000 - 4, 7);
    fork.types.push_back({'Big ', {{1, 0, "", large}}});
    EXPECT_EQ(BuildFork(fork, &bytes), noErr);
    EXPECT_EQ(Parse(bytes), noErr);
    fork.types[0].resources.push_back({2, 0, "", {}});
    EXPECT_EQ(BuildFork(fork, &bytes), addRefFailed);

    fork = {};
    fork.types.push_back({'Name', {}});
    for (int i = 0; i < 300; ++i) {
        const std::string name = std::string(250, 'n') + std::to_string(i);
        fork.types[0].resources.push_back({ResID(i), 0, name, {}});
    }
    EXPECT_EQ(BuildFork(fork, &bytes), addRefFailed);
}

}  // namespace
