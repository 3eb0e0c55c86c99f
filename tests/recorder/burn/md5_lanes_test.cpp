// The sums with which libisofs guards discs, computed by us.
#include <gtest/gtest.h>
#include <stdint.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <string>

#include <libisofs/libisofs.h>

namespace {

std::string Hex(void* inSum) {
    char digest[16], text[33];
    iso_md5_end(&inSum, digest);
    for (int i = 0; i < 16; ++i)
        snprintf(text + 2 * i, 3, "%02x", static_cast<unsigned char>(digest[i]));
    return text;
}

void* Start() {
    void* sum = nullptr;
    EXPECT_EQ(iso_md5_start(&sum), 1);
    return sum;
}

void Add(void* inSum, std::string inBytes) {
    EXPECT_EQ(iso_md5_compute(inSum, inBytes.data(), int(inBytes.size())), 1);
}

std::string SumOf(const std::string& inBytes) {
    void* sum = Start();
    Add(sum, inBytes);
    return Hex(sum);
}

TEST(Md5Lanes, GiveTheSumsOfTheStandard) {
    EXPECT_EQ(SumOf(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(SumOf("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(
        SumOf("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
        "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(Md5Lanes, AFullBlockOfPaddingFollowsMessagesThatEndLateInABlock) {
    EXPECT_EQ(SumOf(std::string(55, 'a')), "ef1772b6dff9a122358552954ad0df65");
    EXPECT_EQ(SumOf(std::string(56, 'a')), "3b0c8ac703f828b04c6c197006d17218");
    EXPECT_EQ(SumOf(std::string(64, 'a')), "014842d480b571495a4a0363793f7367");
}

// As libisofs does it: every block goes to the sum of its file, then to that of the session.
TEST(Md5Lanes, TwoSumsOfTheSameBlocksDoNotDisturbEachOther) {
    const std::string block(2048, 'x'), other(2048, 'y');
    void *file = Start(), *session = Start();
    Add(session, other);
    for (int i = 0; i < 3; ++i) {
        Add(file, block);
        Add(session, block);
    }
    Add(file, "end");
    EXPECT_EQ(Hex(file), SumOf(block + block + block + "end"));
    EXPECT_EQ(Hex(session), SumOf(other + block + block + block));
}

TEST(Md5Lanes, ACloneGoesOnByItself) {
    const std::string block(2048, 'x');
    void *sum = Start(), *clone = nullptr;
    Add(sum, block);
    ASSERT_EQ(iso_md5_clone(sum, &clone), 1);
    Add(sum, block);
    EXPECT_EQ(Hex(clone), SumOf(block));
    EXPECT_EQ(Hex(sum), SumOf(block + block));
}

TEST(Md5Lanes, AWaitingSumMayEndBeforeItsPartner) {
    const std::string block(2048, 'x');
    void *first = Start(), *second = Start();
    Add(first, block);
    EXPECT_EQ(Hex(first), SumOf(block));
    Add(second, block);
    EXPECT_EQ(Hex(second), SumOf(block));
}

}  // namespace
