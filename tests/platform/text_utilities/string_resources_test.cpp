// Strings in resources and in handles.
#include <Carbon/TextUtils.h>

#include "platform/resource_manager/ResourceFixture.h"
#include "text_utilities/string_list.h"

namespace {

class StringResources : public ResourceFixture {
  protected:
    void SetUp() override {
        ResourceFixture::SetUp();
        OpenNew();
    }
    static std::string InList(SInt16 inID, SInt16 inIndex) {
        Str255 string = "\3bad";
        GetIndString(string, inID, inIndex);
        return TextOf(string);
    }
};

TEST_F(StringResources, IndexesCountFromOne) {
    Add('STR#', 128, std::string("\0\2\3one\3two", 10));
    EXPECT_EQ(InList(128, 1), "one");
    EXPECT_EQ(InList(128, 2), "two");
    for (const SInt16 wrong : {SInt16(0), SInt16(3), SInt16(-1), SInt16(32767)})
        EXPECT_EQ(InList(128, wrong), "");
    EXPECT_EQ(InList(129, 1), "");
}

TEST_F(StringResources, AListThatLiesAboutItsCountEndsWhereItsDataEnd) {
    Add('STR#', 1, std::string("\xFF\xFF\3one\5tw", 9));
    EXPECT_EQ(InList(1, 1), "one");
    EXPECT_EQ(InList(1, 2), "");
    EXPECT_EQ(InList(1, 3), "");
    EXPECT_EQ(InList(1, 32767), "");
    for (const auto* text : {"", "x"}) {
        const Handle handle = Add('STR#', 2, text);
        EXPECT_EQ(InList(2, 1), "");
        RemoveResource(handle);
        DisposeHandle(handle);
    }
    Add('STR#', 3, std::string("\0\1\3one\3two", 10));
    EXPECT_EQ(InList(3, 2), "");
}

TEST_F(StringResources, AListIsReadWithoutTheLoadFlagToo) {
    WriteResource(Add('STR#', 128, std::string("\0\1\3one", 6)));
    ReleaseResource(Get1Resource('STR#', 128));
    SetResLoad(false);
    EXPECT_EQ(InList(128, 1), "one");
}

TEST_F(StringResources, AStringIsTheResourceItself) {
    const Handle handle = Add('STR ', 128, "\4text and more");
    const StringHandle string = GetString(128);
    EXPECT_EQ(reinterpret_cast<Handle>(string), handle);
    EXPECT_EQ(TextOf(*string), "text");
    EXPECT_EQ(GetString(129), nullptr);
    EXPECT_EQ(ResError(), resNotFound);
}

TEST_F(StringResources, NewStringsAreCopies) {
    const StringHandle string = NewString(PString("text"));
    EXPECT_EQ(TextIn(reinterpret_cast<Handle>(string)), "\4text");
    SetString(string, PString("longer text"));
    EXPECT_EQ(TextIn(reinterpret_cast<Handle>(string)), "\013longer text");
    DisposeHandle(reinterpret_cast<Handle>(string));
    EXPECT_EQ(NewString(nullptr), nullptr);
}

TEST_F(StringResources, AStringOf255CharactersFits) {
    const std::string text(255, 't');
    Add('STR#', 128, std::string("\0\1\377", 3) + text);
    EXPECT_EQ(InList(128, 1), text);
}

}  // namespace
