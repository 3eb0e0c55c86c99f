// URLs of files and others.
#include <filesystem>

#include "CFSupport.h"
#include "support/TemporaryHome.h"

namespace {

const TemporaryHome gHome;

Ref<CFURLRef> FileUrl(const char* inPath, bool inIsFolder = false) {
    return Ref<CFURLRef>(
        CFURLCreateWithFileSystemPath(nullptr, Str(inPath), kCFURLPOSIXPathStyle, inIsFolder));
}

Ref<CFURLRef> Url(const char* inText, CFURLRef inBase = nullptr) {
    return Ref<CFURLRef>(CFURLCreateWithString(nullptr, Str(inText), inBase));
}

std::string PathOf(CFURLRef inUrl) {
    return TextOf(CFURLCopyFileSystemPath(inUrl, kCFURLPOSIXPathStyle));
}

std::string AbsoluteOf(CFURLRef inUrl) {
    return Text(CFURLGetString(Ref<CFURLRef>(CFURLCopyAbsoluteURL(inUrl))));
}

TEST(CFURL, EscapesWhatAUrlCannotHold) {
    EXPECT_EQ(Text(CFURLGetString(FileUrl("/a b/100%?#;\xC3\xA9"))),
              "file://localhost/a%20b/100%25%3F%23%3B%C3%A9");
    EXPECT_EQ(PathOf(FileUrl("/a b/100%?#;\xC3\xA9")), "/a b/100%?#;\xC3\xA9");
}

TEST(CFURL, OfAFolderEndsInASlashThatItsPathLacks) {
    EXPECT_EQ(Text(CFURLGetString(FileUrl("/a/b", true))), "file://localhost/a/b/");
    EXPECT_EQ(Text(CFURLGetString(FileUrl("/a/b/", false))), "file://localhost/a/b");
    EXPECT_EQ(PathOf(FileUrl("/a/b", true)), "/a/b");
    EXPECT_EQ(PathOf(FileUrl("/", true)), "/");
    EXPECT_EQ(PathOf(FileUrl("/", false)), "/");
    EXPECT_TRUE(CFURLHasDirectoryPath(FileUrl("/a", true)));
    EXPECT_FALSE(CFURLHasDirectoryPath(FileUrl("/a", false)));
}

TEST(CFURL, KeepsARelativePathRelativeToTheWorkingFolder) {
    const auto url = FileUrl("a:b/c");
    EXPECT_EQ(PathOf(url), "a:b/c");
    EXPECT_EQ(Text(CFURLGetString(url)), "a%3Ab/c");
    EXPECT_EQ(carbon::PathFromUrl(url), (std::filesystem::current_path() / "a:b/c").string());
    UInt8 buffer[4096];
    EXPECT_TRUE(CFURLGetFileSystemRepresentation(url, false, buffer, sizeof buffer));
    EXPECT_STREQ(reinterpret_cast<char*>(buffer), "a:b/c");
    EXPECT_TRUE(CFURLGetFileSystemRepresentation(url, true, buffer, sizeof buffer));
    EXPECT_EQ(reinterpret_cast<char*>(buffer), carbon::PathFromUrl(url));
}

TEST(CFURL, CarriesBytesThatAreNotUTF8) {
    const UInt8 bytes[] = {'/', 0xFF, 'a'};
    const Ref<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(nullptr, bytes, 3, false));
    EXPECT_EQ(carbon::PathFromUrl(url),
              "/\xFF"
              "a");
    EXPECT_EQ(PathOf(url), "(null)");
}

TEST(CFURL, IsNotMadeOfPathsThatNameNothing) {
    EXPECT_FALSE(CFURLCreateWithFileSystemPath(nullptr, CFSTR(""), kCFURLPOSIXPathStyle, false));
    EXPECT_FALSE(CFURLCreateWithFileSystemPath(nullptr, CFSTR("/a"), 2, false));
    EXPECT_FALSE(
        CFURLCreateWithFileSystemPath(nullptr, Units(u"/a\xD800"), kCFURLPOSIXPathStyle, false));
    EXPECT_FALSE(
        CFURLCreateWithFileSystemPath(nullptr, Units({u"/a\0b", 4}), kCFURLPOSIXPathStyle, false));
}

TEST(CFURL, IsNotMadeOfTextsThatAreNoUrl) {
    for (const char* text : {"", "a b", "%", "%4", "%zz", "a\"b", "a<b", "\xC3\xA9"}) {
        EXPECT_FALSE(CFURLCreateWithString(nullptr, Str(text), nullptr)) << text;
    }
}

TEST(CFURL, IsResolvedAgainstItsBase) {
    const auto base = Url("http://host/a/b/c?q");
    const std::pair<const char*, const char*> cases[] = {
        {"d", "http://host/a/b/d"},      {"../d", "http://host/a/d"},
        {"../../../d", "http://host/d"}, {"/d", "http://host/d"},
        {"//other/d", "http://other/d"}, {"d/.", "http://host/a/b/d/"},
        {"ftp://x/y", "ftp://x/y"},      {"?z", "http://host/a/b/c?z"},
        {"", "http://host/a/b/c?q"}};
    for (const auto& [text, absolute] : cases)
        EXPECT_EQ(AbsoluteOf(Url(text, base)), absolute) << text;
}

TEST(CFURL, KnowsItsParts) {
    const auto url = FileUrl("/x y/name.tar.gz");
    EXPECT_EQ(TextOf(CFURLCopyScheme(url)), "file");
    EXPECT_EQ(TextOf(CFURLCopyPath(url)), "/x%20y/name.tar.gz");
    EXPECT_EQ(TextOf(CFURLCopyLastPathComponent(url)), "name.tar.gz");
    EXPECT_EQ(TextOf(CFURLCopyPathExtension(url)), "gz");
    EXPECT_EQ(TextOf(CFURLCopyLastPathComponent(FileUrl("/a/b c", true))), "b c");
    EXPECT_EQ(TextOf(CFURLCopyLastPathComponent(FileUrl("/"))), "/");
    EXPECT_FALSE(CFURLCopyPathExtension(FileUrl("/.hidden")));
    EXPECT_FALSE(CFURLCopyPathExtension(FileUrl("/name.")));
    EXPECT_FALSE(CFURLCopyPath(Url("mailto:a@b")));
    EXPECT_FALSE(carbon::PathFromUrl(Url("http://host/a")));
    EXPECT_FALSE(carbon::PathFromUrl(Url("file://elsewhere/a")));
    EXPECT_EQ(carbon::PathFromUrl(Url("file:///a%20b/")), "/a b");
}

TEST(CFURL, GrowsAndShrinksByNames) {
    const auto text = [](CFURLRef inOwned) { return Text(CFURLGetString(Ref<CFURLRef>(inOwned))); };
    const auto folder = FileUrl("/a", true);
    EXPECT_EQ(text(CFURLCreateCopyAppendingPathComponent(nullptr, folder, CFSTR("b c"), true)),
              "file://localhost/a/b%20c/");
    EXPECT_EQ(
        text(CFURLCreateCopyAppendingPathComponent(nullptr, FileUrl("/a"), CFSTR("b"), false)),
        "file://localhost/a/b");
    EXPECT_EQ(text(CFURLCreateCopyDeletingLastPathComponent(nullptr, FileUrl("/a/b", true))),
              "file://localhost/a/");
    EXPECT_EQ(text(CFURLCreateCopyDeletingLastPathComponent(nullptr, FileUrl("/"))),
              "file://localhost/");
    EXPECT_EQ(text(CFURLCreateCopyAppendingPathExtension(nullptr, folder, CFSTR("app"))),
              "file://localhost/a.app/");
    EXPECT_EQ(text(CFURLCreateCopyDeletingPathExtension(nullptr, FileUrl("/a.app", true))),
              "file://localhost/a/");
}

TEST(CFURL, IsEqualWhenTextAndBaseAre) {
    EXPECT_TRUE(CFEqual(FileUrl("/a"), FileUrl("/a")));
    EXPECT_FALSE(CFEqual(FileUrl("/a"), FileUrl("/a", true)));
    EXPECT_FALSE(CFEqual(Url("a", FileUrl("/x", true)), Url("a", FileUrl("/y", true))));
}

TEST(CFURLGetFileSystemRepresentation, IsFalseWhenTheBufferIsTooSmall) {
    UInt8 buffer[4] = {9, 9, 9, 9};
    EXPECT_FALSE(CFURLGetFileSystemRepresentation(FileUrl("/abc"), true, buffer, 4));
    EXPECT_EQ(buffer[0], 9);
    EXPECT_TRUE(CFURLGetFileSystemRepresentation(FileUrl("/ab"), true, buffer, 4));
}

TEST(PercentEscapes, AreDecodedExceptThoseToLeave) {
    const auto decoded = [](const char* inText, CFStringRef inLeave) {
        return TextOf(CFURLCreateStringByReplacingPercentEscapes(nullptr, Str(inText), inLeave));
    };
    EXPECT_EQ(decoded("a%20b%C3%A9%2F", CFSTR("")), "a b\xC3\xA9/");
    EXPECT_EQ(decoded("a%20b%2F%c3%a9", CFSTR("/")), "a b%2F\xC3\xA9");
    EXPECT_EQ(decoded("a%20b", nullptr), "a%20b");
    for (const char* bad : {"%", "%2", "%zz", "%FF", "%C3", "%C3a"})
        EXPECT_EQ(decoded(bad, CFSTR("")), "(null)") << bad;
}

TEST(PercentEscapes, AreAddedInTheEncodingAsked) {
    const auto added = [](const char* inText, CFStringRef inLeave, CFStringRef inEscape,
                          CFStringEncoding inEncoding) {
        return TextOf(CFURLCreateStringByAddingPercentEscapes(nullptr, Str(inText), inLeave,
                                                              inEscape, inEncoding));
    };
    EXPECT_EQ(added("a b/%#\xC3\xA9", nullptr, nullptr, kCFStringEncodingUTF8),
              "a%20b/%25%23%C3%A9");
    EXPECT_EQ(added("a b/\xC3\xA9", CFSTR(" "), CFSTR("/"), kCFStringEncodingMacRoman),
              "a b%2F%8E");
    EXPECT_EQ(added("\xE6\x97\xA5", nullptr, nullptr, kCFStringEncodingMacRoman), "(null)");
}

}  // namespace
