// URLs beside the File Manager: references to the same files, and paths with ':' between the names.
#include <Carbon/Carbon.h>
#include <Platform/Platform.h>

#include <filesystem>
#include <fstream>

#include "CFSupport.h"
#include "support/TemporaryHome.h"

namespace {

namespace fs = std::filesystem;

const TemporaryHome gHome;

Ref<CFURLRef> FileUrl(const fs::path& inPath, bool inIsFolder = false) {
    return Ref<CFURLRef>(CFURLCreateWithFileSystemPath(nullptr, Str(inPath.string()),
                                                       kCFURLPOSIXPathStyle, inIsFolder));
}

std::string PathOf(CFURLRef inUrl) {
    return inUrl ? TextOf(CFURLCopyFileSystemPath(inUrl, kCFURLPOSIXPathStyle)) : "no URL";
}

std::string HfsPathOf(CFURLRef inUrl) {
    return TextOf(CFURLCopyFileSystemPath(inUrl, kCFURLHFSPathStyle));
}

std::string FromHfs(const std::string& inPath, bool inIsFolder = false) {
    const Ref<CFURLRef> url(
        CFURLCreateWithFileSystemPath(nullptr, Str(inPath), kCFURLHFSPathStyle, inIsFolder));
    return PathOf(url);
}

// A volume called "Disc" with a file and a folder on it.
class OnAVolume : public testing::Test {
  protected:
    OnAVolume() {
        fs::create_directories(mRoot / "folder");
        std::ofstream(mRoot / "a file") << "x";
        EXPECT_EQ(PlatformMountFolder(mRoot.c_str(), "Disc", &mVolume), noErr);
    }
    ~OnAVolume() override {
        EXPECT_EQ(PlatformUnmountFolder(mVolume), noErr);
        fs::remove_all(mRoot);
    }

    const fs::path mRoot = gHome.Root() / "volume";
    FSVolumeRefNum mVolume = 0;
};

TEST_F(OnAVolume, UrlAndReferenceMeanTheSameFile) {
    FSRef ref;
    ASSERT_TRUE(CFURLGetFSRef(FileUrl(mRoot / "a file"), &ref));
    UInt8 path[1024];
    ASSERT_EQ(FSRefMakePath(&ref, path, sizeof path), noErr);
    EXPECT_EQ(reinterpret_cast<const char*>(path), (mRoot / "a file").string());
    const Ref<CFURLRef> url(CFURLCreateFromFSRef(nullptr, &ref));
    ASSERT_TRUE(url);
    EXPECT_EQ(PathOf(url), (mRoot / "a file").string());
    EXPECT_FALSE(CFURLHasDirectoryPath(url));
}

TEST_F(OnAVolume, UrlOfAFoldersReferenceIsOneOfAFolder) {
    FSRef ref;
    ASSERT_TRUE(CFURLGetFSRef(FileUrl(mRoot / "folder", true), &ref));
    EXPECT_TRUE(CFURLHasDirectoryPath(Ref<CFURLRef>(CFURLCreateFromFSRef(nullptr, &ref))));
}

TEST_F(OnAVolume, OnlyAFileThatIsThereHasAReference) {
    FSRef ref;
    EXPECT_FALSE(CFURLGetFSRef(FileUrl(mRoot / "nothing"), &ref));
    const Ref<CFURLRef> web(CFURLCreateWithString(nullptr, CFSTR("http://example.org/a"), nullptr));
    EXPECT_FALSE(CFURLGetFSRef(web, &ref));
    ASSERT_TRUE(CFURLGetFSRef(FileUrl(mRoot / "a file"), &ref));
    fs::remove(mRoot / "a file");
    EXPECT_FALSE(Ref<CFURLRef>(CFURLCreateFromFSRef(nullptr, &ref)));
    EXPECT_FALSE(Ref<CFURLRef>(CFURLCreateFromFSRef(nullptr, nullptr)));
}

TEST_F(OnAVolume, HfsPathBeginsWithTheVolume) {
    EXPECT_EQ(HfsPathOf(FileUrl(mRoot / "a file")), "Disc:a file");
    EXPECT_EQ(HfsPathOf(FileUrl(mRoot / "folder/new")), "Disc:folder:new") << "not there yet";
    EXPECT_EQ(HfsPathOf(FileUrl(mRoot, true)), "Disc:");
}

TEST_F(OnAVolume, ColonAndSlashChangePlacesInAnHfsPath) {
    EXPECT_EQ(HfsPathOf(FileUrl(mRoot / "9:41")), "Disc:9/41");
    EXPECT_EQ(FromHfs("Disc:9/41"), (mRoot / "9:41").string());
}

TEST_F(OnAVolume, HfsPathLeadsBack) {
    EXPECT_EQ(FromHfs("Disc:a file"), (mRoot / "a file").string());
    EXPECT_EQ(FromHfs("Disc:folder:deep:er"), (mRoot / "folder/deep/er").string());
    EXPECT_EQ(FromHfs("Disc:", true), mRoot.string());
}

TEST_F(OnAVolume, HfsPathOfAnUnknownVolumeIsNoUrl) {
    EXPECT_EQ(FromHfs("No such volume:file"), "no URL");
    EXPECT_EQ(FromHfs(""), "no URL");
    EXPECT_EQ(FromHfs("a volume's name of more than 27 characters:file"), "no URL");
}

TEST(HfsPath, WithoutAVolumeIsRelative) {
    const Ref<CFURLRef> url(
        CFURLCreateWithFileSystemPath(nullptr, CFSTR(":folder:file"), kCFURLHFSPathStyle, false));
    ASSERT_TRUE(url);
    EXPECT_EQ(PathOf(url), "folder/file");
    const Ref<CFURLRef> up(
        CFURLCreateWithFileSystemPath(nullptr, CFSTR("::file"), kCFURLHFSPathStyle, false));
    ASSERT_TRUE(up);
    EXPECT_EQ(PathOf(up), "../file");
}

TEST(HfsPath, OfSomethingThatIsNoFileIsNone) {
    const Ref<CFURLRef> web(CFURLCreateWithString(nullptr, CFSTR("http://example.org/a"), nullptr));
    EXPECT_EQ(HfsPathOf(web), "(null)");
}

}  // namespace
