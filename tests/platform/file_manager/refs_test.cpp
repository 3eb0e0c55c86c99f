// References: what they name, what is told about it.
#include <fcntl.h>
#include <sys/stat.h>

#include <climits>

#include "FileFixture.h"

namespace {

class FSRefTest : public FileFixture {
  protected:
    static FSRef Ref(const std::string& inPath) {
        FSRef ref{};
        EXPECT_EQ(RefOf(inPath, &ref), noErr) << inPath;
        return ref;
    }
    static std::u16string NameOfRef(const FSRef& inRef) {
        HFSUniStr255 name;
        EXPECT_EQ(FSGetCatalogInfo(&inRef, kFSCatInfoNone, nullptr, &name, nullptr, nullptr),
                  noErr);
        return {reinterpret_cast<const char16_t*>(name.unicode), name.length};
    }
    static OSErr RefByName(const FSRef& inFolder, const std::u16string& inName, FSRef* outRef) {
        return FSMakeFSRefUnicode(&inFolder, UniCharCount(inName.size()),
                                  reinterpret_cast<const UniChar*>(inName.data()),
                                  kTextEncodingUnknown, outRef);
    }
};

TEST_F(FSRefTest, NamesTheSameFileAfterARenameAndAMove) {
    MakeFolder("Other");
    NumberOf(Path("Other"));
    const FSRef ref = Ref(Write("First"));
    std::filesystem::rename(Path("First"), Path("Second"));
    EXPECT_EQ(PathOf(ref), Path("Second"));
    std::filesystem::rename(Path("Second"), Path("Other/Third"));
    EXPECT_EQ(PathOf(ref), Path("Other/Third"));
    std::filesystem::remove(Path("Other/Third"));
    Write("Other/Third");
    EXPECT_EQ(PathOf(ref), "error -43");
}

TEST_F(FSRefTest, NamesFilesWhoseNameItCannotHold) {
    const FSRef ref = Ref(Write(std::string(255, 'r')));
    EXPECT_EQ(PathOf(ref), Path(std::string(255, 'r')));
    std::filesystem::rename(Path(std::string(255, 'r')), Path(std::string(255, 's')));
    EXPECT_EQ(PathOf(ref), Path(std::string(255, 's')));
}

TEST_F(FSRefTest, ComparesObjectsNotBytes) {
    const FSRef before = Ref(Write("A"));
    const FSRef other = Ref(Write("B"));
    std::filesystem::rename(Path("A"), Path("C"));
    const FSRef after = Ref(Path("C"));
    EXPECT_EQ(FSCompareFSRefs(&before, &after), noErr);
    EXPECT_EQ(FSCompareFSRefs(&before, &other), errFSRefsDifferent);
    const FSRef nothing{};
    EXPECT_EQ(FSCompareFSRefs(&before, &nothing), errFSBadFSRef);
}

TEST_F(FSRefTest, RefusesBytesThatAreNoReference) {
    FSRef ref;
    std::memset(&ref, 0xFF, sizeof ref);
    UInt8 path[PATH_MAX];
    EXPECT_EQ(FSRefMakePath(&ref, path, sizeof path), errFSBadFSRef);
    EXPECT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, nullptr, nullptr),
              errFSBadFSRef);
    // Every byte of a good one may arrive changed: an answer, never a crash.
    const FSRef good = Ref(Write("Good"));
    for (size_t i = 0; i < sizeof good; ++i) {
        FSRef bad = good;
        bad.hidden[i] ^= 0x2F;
        FSRefMakePath(&bad, path, sizeof path);
    }
    EXPECT_EQ(PathOf(good), Path("Good"));
}

TEST_F(FSRefTest, TellsWhenThePathDoesNotFit) {
    const FSRef ref = Ref(Write("File"));
    std::vector<UInt8> path(Path("File").size() + 1);
    EXPECT_EQ(FSRefMakePath(&ref, path.data(), UInt32(path.size() - 1)), pathTooLongErr);
    EXPECT_EQ(FSRefMakePath(&ref, path.data(), UInt32(path.size())), noErr);
    EXPECT_EQ(FSRefMakePath(&ref, path.data(), 0), pathTooLongErr);
}

TEST_F(FSRefTest, IsMadeOfRelativePathsAndSaysWhatIsAFolder) {
    Write("File");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(mFolder);
    FSRef ref;
    Boolean isFolder = true;
    ASSERT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>("File"), &ref, &isFolder), noErr);
    EXPECT_EQ(PathOf(ref), Path("File"));
    EXPECT_FALSE(isFolder);
    ASSERT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>("./../"
                                                           "."),
                            &ref, &isFolder),
              noErr);
    EXPECT_TRUE(isFolder);
    EXPECT_EQ(PathOf(ref), mFolder.parent_path());
    std::filesystem::current_path(before);
    EXPECT_EQ(RefOf(Path("Missing"), &ref), fnfErr);
    EXPECT_EQ(RefOf(Path("Missing/File"), &ref), dirNFErr);
    EXPECT_EQ(RefOf(Path("File/Below"), &ref), dirNFErr);
    EXPECT_EQ(RefOf(std::string(5000, 'p'), &ref), bdNamErr);
}

TEST_F(FSRefTest, GivesTheNameAsOnDiskAndFindsItAgain) {
    const FSRef folder = Ref(mFolder);
    for (const std::string name : {"a:b", "e\u0301", "日本語", "😀"}) {
        const FSRef ref = Ref(Write(name));
        FSRef found{};
        ASSERT_EQ(RefByName(folder, NameOfRef(ref), &found), noErr) << name;
        EXPECT_EQ(PathOf(found), Path(name));
    }
    EXPECT_EQ(NameOfRef(Ref(Path("a:b"))), u"a/b");
    EXPECT_EQ(NameOfRef(Ref(Path("😀"))), u"😀");
}

TEST_F(FSRefTest, FindsANameInAnotherCaseOrFormWhenThereIsNoExactOne) {
    Write("Caf\u00e9");
    FSRef found{};
    ASSERT_EQ(RefByName(Ref(mFolder), u"CAFE\u0301", &found), noErr);
    EXPECT_EQ(PathOf(found), Path("Caf\u00e9"));
    EXPECT_EQ(RefByName(Ref(mFolder), u"Missing", &found), fnfErr);
    EXPECT_EQ(RefByName(Ref(mFolder), u"", &found), errFSMissingName);
    EXPECT_EQ(RefByName(Ref(mFolder), std::u16string(256, u'x'), &found), errFSNameTooLong);
    EXPECT_EQ(RefByName(Ref(mFolder), u"..", &found), bdNamErr);
    EXPECT_EQ(RefByName(Ref(Path("Caf\u00e9")), u"x", &found), errFSNotAFolder);
}

TEST_F(FSRefTest, GivesTheParentAndNothingForARoot) {
    const FSRef ref = Ref(Write("File"));
    FSRef parent;
    ASSERT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, nullptr, &parent), noErr);
    EXPECT_EQ(PathOf(parent), mFolder);
    const FSRef root = Ref("/");
    FSSpec spec;
    ASSERT_EQ(FSGetCatalogInfo(&root, kFSCatInfoNone, nullptr, nullptr, &spec, &parent), noErr);
    EXPECT_EQ(PathOf(parent), "error -1401");
    EXPECT_EQ(+spec.parID, fsRtParID);
    EXPECT_EQ(InfoOf("/").nodeID, UInt32(fsRtDirID));
    EXPECT_EQ(InfoOf("/").parentDirID, UInt32(fsRtParID));
}

TEST_F(FSRefTest, RefusesUnknownInformation) {
    const FSRef ref = Ref(Write("File"));
    FSCatalogInfo info;
    const auto get = [&](FSCatalogInfoBitmap inWhich, FSCatalogInfo* outInfo) {
        return FSGetCatalogInfo(&ref, inWhich, outInfo, nullptr, nullptr, nullptr);
    };
    EXPECT_EQ(get(0x80000000, &info), errFSBadInfoBitmap);
    EXPECT_EQ(get(0x00040000, &info), errFSBadInfoBitmap);
    EXPECT_EQ(get(kFSCatInfoVolume, nullptr), paramErr);
    EXPECT_EQ(get(kFSCatInfoUserAccess, &info), noErr);
}

TEST_F(FSRefTest, FillsOnlyWhatIsAskedFor) {
    const FSRef ref = Ref(Write("File", "12345"));
    FSCatalogInfo info;
    std::memset(&info, 0x55, sizeof info);
    ASSERT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoDataSizes, &info, nullptr, nullptr, nullptr), noErr);
    EXPECT_EQ(+info.dataLogicalSize, 5u);
    EXPECT_EQ(info.nodeFlags, 0x5555);
    EXPECT_EQ(+info.nodeID, 0x55555555u);
}

TEST_F(FSRefTest, TellsSizesDatesKindAndValence) {
    MakeFolder("Folder/Sub");
    Write("Folder/File", std::string(5000, 'x'));
    Write("Folder/._File");
    const timespec times[2] = {{1000000000, 0}, {1000000000, 500000000}};
    utimensat(AT_FDCWD, Path("Folder/File").c_str(), times, 0);
    const auto file = InfoOf(Path("Folder/File"));
    EXPECT_EQ(+file.dataLogicalSize, 5000u);
    EXPECT_GE(+file.dataPhysicalSize, 5000u);
    EXPECT_EQ(+file.rsrcLogicalSize, 0u);
    EXPECT_EQ(+file.contentModDate.lowSeconds, 1000000000u + 2082844800u);
    EXPECT_EQ(+file.contentModDate.fraction, 0x8000);
    EXPECT_EQ(+file.backupDate.lowSeconds, 0u);
    EXPECT_EQ(file.nodeFlags & kFSNodeIsDirectoryMask, 0);
    EXPECT_GE(+file.nodeID, 0x40000000u);
    const auto folder = InfoOf(Path("Folder"));
    EXPECT_EQ(folder.nodeFlags & kFSNodeIsDirectoryMask, kFSNodeIsDirectoryMask);
    EXPECT_EQ(+folder.valence, 2u);
    EXPECT_EQ(+folder.dataLogicalSize, 0u);
    EXPECT_EQ(+file.parentDirID, +folder.nodeID);
    struct stat facts;
    ASSERT_EQ(stat(Path("Folder/File").c_str(), &facts), 0);
    UInt16 mode = 0;
    std::memcpy(&mode, reinterpret_cast<const char*>(file.permissions) + 10, sizeof mode);
    EXPECT_EQ(mode, UInt16(facts.st_mode));
    EXPECT_EQ(+file.permissions[0], facts.st_uid);
}

}  // namespace
