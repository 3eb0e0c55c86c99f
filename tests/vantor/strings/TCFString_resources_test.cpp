// The strings that are read from resources once. This program stands in for the resource files.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>

#include "support/Thrown.h"
#include "vantor/strings/TCFString.h"

namespace {

// What the files hold, and how often they were asked.
struct Files {
    std::map<SInt16, std::string> strings;  // with their length bytes
    std::map<std::pair<SInt16, SInt16>, std::string> entries;
    int reads = 0, released = 0;
};
Files gFiles;

std::string Text(const TCFString& inString) {
    char text[1024];
    EXPECT_TRUE(inString.UTF8(1023, text));
    return text;
}

class StringCache : public testing::Test {
  protected:
    void SetUp() override { gFiles = Files(); }
};

TEST_F(StringCache, ReadsAListEntryOnce) {
    gFiles.entries[{100, 2}] = "caf\x8E";
    EXPECT_EQ(Text(TCFString::Res(100, 2)), "café");
    gFiles.entries[{100, 2}] = "changed";
    EXPECT_EQ(Text(TCFString::Res(100, 2)), "café");
    EXPECT_EQ(gFiles.reads, 1);
    EXPECT_EQ(Text(TCFString::Res(101, 2)), "");
}

TEST_F(StringCache, KeepsAskingAgainForWhatWasEmpty) {
    EXPECT_TRUE(TCFString::Res(200, 1).IsEmpty());
    EXPECT_TRUE(TCFString::Res(200, 1).IsEmpty());
    EXPECT_EQ(gFiles.reads, 2);
    gFiles.entries[{200, 1}] = "there";
    EXPECT_EQ(Text(TCFString::Res(200, 1)), "there");
}

TEST_F(StringCache, KeepsTakingIndexZeroForAnEntryOfTheList) {
    gFiles.strings[300] = "\5plain";
    EXPECT_TRUE(TCFString::Res(300, 0).IsEmpty());
    EXPECT_EQ(Text(TCFString::Res(300, -1)), "plain");
    EXPECT_EQ(gFiles.released, 1);
    EXPECT_EQ(Text(TCFString::Res(300, -1)), "plain");
    EXPECT_EQ(gFiles.released, 1);
}

TEST_F(StringCache, ThrowsForAStringThatIsMissing) {
    EXPECT_EQ(CodeThrownBy([] { TCFString::Res(400, -1); }), SInt32{'nilP'});
    gFiles.strings[400] = "\4late";
    EXPECT_EQ(Text(TCFString::Res(400, -1)), "late");
}

TEST_F(StringCache, TakesNoMoreThanAResourceHolds) {
    gFiles.strings[500] = "\xFFshort";
    EXPECT_EQ(Text(TCFString::Res(500, -1)), "short");
    gFiles.strings[501] = "";
    EXPECT_EQ(Text(TCFString::Res(501, -1)), "");
    gFiles.strings[502] = std::string("\xFF") + std::string(300, 'x');
    EXPECT_EQ(TCFString::Res(502, -1).Length(), 255);
}

}  // namespace

StringHandle GetString(SInt16 inID) {
    ++gFiles.reads;
    const auto found = gFiles.strings.find(inID);
    if (found == gFiles.strings.end()) return nullptr;
    Handle handle = nullptr;
    PtrToHand(found->second.data(), &handle, static_cast<Size>(found->second.size()));
    return reinterpret_cast<StringHandle>(handle);
}

void ReleaseResource(Handle inResource) {
    ++gFiles.released;
    DisposeHandle(inResource);
}

void GetIndString(Str255 outString, SInt16 inListID, SInt16 inIndex) {
    ++gFiles.reads;
    const std::string text = gFiles.entries[{inListID, inIndex}];
    outString[0] = static_cast<UInt8>(text.size());
    std::copy(text.begin(), text.end(), outString + 1);
}
