// Property lists that try to exhaust or stop their reader, and those that do not.
#include "core_foundation/property_lists/property_list.h"

#include "CFSupport.h"

namespace {

// A binary list of these objects, the first one at the top. References are one byte.
std::string Binary(const std::vector<std::string>& inObjects) {
    std::string bytes = "bplist00", table;
    for (const std::string& object : inObjects) {
        for (int shift = 24; shift >= 0; shift -= 8)
            table += static_cast<char>(bytes.size() >> shift);
        bytes += object;
    }
    const size_t start = bytes.size();
    bytes += table + std::string(6, '\0') + "\4\1";
    for (const size_t number : {inObjects.size(), size_t{0}, start}) {
        for (int shift = 56; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift);
    }
    return bytes;
}

bool IsRead(std::string_view inBytes) {
    const Ref<CFDictionaryRef> dictionary(carbon::DictionaryFromPropertyList(inBytes));
    return dictionary != nullptr;
}

TEST(PropertyList, IsReadFromBinaryBytes) {
    const std::string bytes = Binary({std::string("\xD1\1\2", 3), "\x51k", "\x51v"});
    const Ref<CFDictionaryRef> dictionary(carbon::DictionaryFromPropertyList(bytes));
    ASSERT_TRUE(dictionary);
    EXPECT_EQ(Text(static_cast<CFStringRef>(CFDictionaryGetValue(dictionary, CFSTR("k")))), "v");
}

TEST(PropertyList, IsRefusedWhenItHoldsItself) {
    EXPECT_FALSE(IsRead(Binary({std::string("\xD1\1\0", 3), "\x51k"})));
}

// Each array names the next one fourteen times: 14 to the power of 20 in all.
TEST(PropertyList, IsRefusedWhenItsReferencesMultiply) {
    std::vector<std::string> objects = {std::string("\xD1\1\2", 3), "\x51k"};
    for (char i = 3; i < 23; ++i) objects.push_back("\xAE" + std::string(14, i));
    objects.push_back("\x51v");
    EXPECT_FALSE(IsRead(Binary(objects)));
}

TEST(PropertyList, IsRefusedWhenItNamesALargeTextManyTimes) {
    std::vector<std::string> objects = {std::string("\xD1\1\2", 3), "\x51k",
                                        std::string("\xAF\x10\xC8", 3) + std::string(200, '\3')};
    objects.push_back(std::string("\x5F\x12\0\x02\0\0", 6) + std::string(0x20000, 'x'));
    EXPECT_FALSE(IsRead(Binary(objects)));
}

TEST(PropertyList, IsRefusedWhenATextHoldsAZero) {
    EXPECT_FALSE(IsRead(Binary({std::string("\xD1\1\2", 3), "\x51k", std::string("\x52\0x", 3)})));
    EXPECT_FALSE(IsRead(Binary({std::string("\xD1\1\2", 3), std::string("\x51\0", 2), "\x51v"})));
    EXPECT_FALSE(IsRead(std::string("<plist><dict><key>a\0</key><true/></dict></plist>", 47)));
}

TEST(PropertyList, IsRefusedWhenItIsNestedTooDeeply) {
    const auto nested = [](int inDepth) {
        std::string open, close;
        for (int i = 0; i < inDepth; ++i) open += "<array>", close += "</array>";
        return "<plist><dict><key>k</key>" + open + close + "</dict></plist>";
    };
    EXPECT_TRUE(IsRead(nested(20)));
    EXPECT_FALSE(IsRead(nested(carbon::kDeepestPropertyList)));
}

TEST(PropertyList, IsRefusedWhenItsNumbersLeaveIt) {
    const std::string good = Binary({std::string("\xD1\1\2", 3), "\x51k", "\x51v"});
    for (size_t i = 0; i < good.size(); ++i) {
        for (const char byte : {'\0', '\x7F', '\xFF'}) {
            std::string bytes = good;
            bytes[i] = byte;
            IsRead(bytes);
        }
        EXPECT_FALSE(IsRead(good.substr(0, i))) << i;
    }
}

TEST(PropertyList, KeepsEveryKindOfValue) {
    const Ref<CFDictionaryRef> dictionary(carbon::DictionaryFromPropertyList(
        "<?xml version=\"1.0\"?><plist "
        "version=\"1.0\"><dict><key>i</key><integer>-5</integer><key>r</key>"
        "<real>1.5</real><key>t</key><true/><key>d</key><data>AQI=</data><key>m</key>"
        "<date>2001-01-01T00:00:10Z</date><key>a</key><array><string>x&amp;y</string></array></"
        "dict></plist>"));
    ASSERT_TRUE(dictionary);
    const auto described = [&](CFStringRef inKey) {
        return TextOf(CFCopyDescription(CFDictionaryGetValue(dictionary, inKey)));
    };
    EXPECT_EQ(described(CFSTR("i")), "-5");
    EXPECT_EQ(described(CFSTR("r")), "1.5");
    EXPECT_EQ(CFDictionaryGetValue(dictionary, CFSTR("t")), kCFBooleanTrue);
    EXPECT_EQ(described(CFSTR("d")), "<0102>");
    EXPECT_EQ(described(CFSTR("m")), "2001-01-01 00:00:10 +0000");
    EXPECT_EQ(described(CFSTR("a")), "(x&y)");
}

TEST(StringsFile, IsRefusedAtTheFirstThingThatDoesNotBelong) {
    const auto count = [](std::string_view inText) {
        const Ref<CFDictionaryRef> pairs(carbon::DictionaryFromStringsFile(inText));
        return pairs ? CFDictionaryGetCount(pairs) : -1;
    };
    EXPECT_EQ(count("a = b; \"c\" = \"d\\\"\"; // end"), 2);
    EXPECT_EQ(count("alone;"), 1);
    EXPECT_EQ(count(""), 0);
    for (const char* bad : {"a = b", "a = ;", "= b;", "\"a", "\"a\\", "a = {}; "})
        EXPECT_EQ(count(bad), -1) << bad;
}

}  // namespace
