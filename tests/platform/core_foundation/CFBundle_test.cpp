// Bundles: their version, type and creator, dictionary, language and program.
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "BundleFolder.h"

namespace {

namespace fs = std::filesystem;

struct VersionCase {
    const char* text;
    UInt32 number;
};

void PrintTo(const VersionCase& inCase, std::ostream* outStream) {
    *outStream << inCase.text;
}

class CFBundleVersion : public testing::TestWithParam<VersionCase> {};

TEST_P(CFBundleVersion, IsTheNumberOfTheString) {
    BundleFolder folder;
    folder.WriteInfo(BundleFolder::Pair("CFBundleVersion", GetParam().text));
    EXPECT_EQ(CFBundleGetVersionNumber(folder.Bundle()), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(
    Versions, CFBundleVersion,
    testing::Values(VersionCase{"7", 0x07008000}, VersionCase{"7.", 0x07008000},
                    VersionCase{"7.0", 0x07008000}, VersionCase{"7.0.1", 0x07018000},
                    VersionCase{"7.0.1b3", 0x07016003}, VersionCase{"7.0b3", 0x07006003},
                    VersionCase{"7b3", 0x07006003}, VersionCase{"7.0.b3", 0x07006003},
                    VersionCase{"7.0.0d1", 0x07002001}, VersionCase{"7.0.1d12", 0x0701200C},
                    VersionCase{"7.0.1a255", 0x070140FF}, VersionCase{"7.0.1f5", 0x07018005},
                    VersionCase{"7.0.1b", 0x07016000}, VersionCase{"10.2.3", 0x10238000},
                    VersionCase{"12.4", 0x12408000}, VersionCase{"99.9.9", 0x99998000},
                    VersionCase{"10.4", 0x10408000}, VersionCase{"7.1b12", 0x0710600C},
                    VersionCase{".5", 0x00508000}, VersionCase{"6.9.9", 0x06998000},
                    VersionCase{"6.9.9b255", 0x069960FF}, VersionCase{"7.10", 0},
                    VersionCase{"7.0.10", 0}, VersionCase{"7.1.10", 0}, VersionCase{"7.0.1.2", 0},
                    VersionCase{"100.0", 0}, VersionCase{"7.0.1fc1", 0}, VersionCase{"7.0.1B3", 0},
                    VersionCase{"v7.0", 0}, VersionCase{"7.0 ", 0}, VersionCase{"7.0.1b256", 0},
                    VersionCase{"7.0b0001", 0}, VersionCase{"10.10.20b13", 0},
                    VersionCase{"10.1.2b1234", 0}, VersionCase{"", 0}));

TEST(CFBundleVersionNumber, KeepsOneDigitForMinorAndBugFixRevision) {
    BundleFolder folder;
    folder.WriteInfo(BundleFolder::Pair("CFBundleVersion", "7.10"));
    EXPECT_EQ(CFBundleGetVersionNumber(folder.Bundle()), 0u);
}

TEST(CFBundleVersionNumber, PrefersTheNumericKeyAndTakesNumbersAsTheyAre) {
    BundleFolder folder;
    folder.WriteInfo("<key>CFBundleNumericVersion</key><integer>117604355</integer>" +
                     BundleFolder::Pair("CFBundleVersion", "9.0"));
    EXPECT_EQ(CFBundleGetVersionNumber(folder.Bundle()), 117604355u);
    folder.WriteInfo("<key>CFBundleVersion</key><integer>7</integer>");
    EXPECT_EQ(CFBundleGetVersionNumber(folder.Bundle()), 7u);
}

TEST(CFBundleVersionNumber, IgnoresTheShortVersionString) {
    BundleFolder folder;
    folder.WriteInfo(BundleFolder::Pair("CFBundleShortVersionString", "7.0"));
    EXPECT_EQ(CFBundleGetVersionNumber(folder.Bundle()), 0u);
}

struct PackageInfo {
    bool isPackage = false;
    UInt32 type = 1, creator = 2;
};

PackageInfo InfoOf(const BundleFolder& inFolder) {
    PackageInfo info;
    info.isPackage = CFBundleGetPackageInfoInDirectory(inFolder.Url(), &info.type, &info.creator);
    return info;
}

TEST(CFBundlePackageInfo, PrefersPkgInfoOverInfoPlist) {
    BundleFolder folder;
    folder.WriteInfo(BundleFolder::Pair("CFBundlePackageType", "BNDL") +
                     BundleFolder::Pair("CFBundleSignature", "ABCD"));
    folder.Write("Contents/PkgInfo", "APPLFv8k\n");
    const PackageInfo info = InfoOf(folder);
    EXPECT_TRUE(info.isPackage);
    EXPECT_EQ(info.type, UInt32('APPL'));
    EXPECT_EQ(info.creator, UInt32('Fv8k'));
}

TEST(CFBundlePackageInfo, SkipsAPkgInfoThatIsTooShort) {
    BundleFolder folder;
    folder.Write("Contents/PkgInfo", "APPLFv8");
    folder.WriteInfo(BundleFolder::Pair("CFBundleSignature", "ABCD"));
    const PackageInfo info = InfoOf(folder);
    EXPECT_EQ(info.type, UInt32('APPL'));
    EXPECT_EQ(info.creator, UInt32('ABCD'));
}

TEST(CFBundlePackageInfo, LooksForPkgInfoInTheOldFoldersToo) {
    BundleFolder old("Old.plugin"), flat("Flat");
    old.Write("Support Files/PkgInfo", "BNDLoldS");
    flat.Write("PkgInfo", "BNDLflat");
    EXPECT_EQ(InfoOf(old).creator, UInt32('oldS'));
    EXPECT_EQ(InfoOf(flat).creator, UInt32('flat'));
}

TEST(CFBundlePackageInfo, TakesOnlyCodesOfFourMacRomanCharacters) {
    BundleFolder folder;
    folder.WriteInfo(BundleFolder::Pair("CFBundlePackageType", "TOOLONG") +
                     BundleFolder::Pair("CFBundleSignature",
                                        "\xC3\xA9"
                                        "bcd"));
    PackageInfo info = InfoOf(folder);
    EXPECT_EQ(info.type, UInt32('APPL'));
    EXPECT_EQ(info.creator, 0x8E626364u);
    folder.WriteInfo(BundleFolder::Pair("CFBundleSignature",
                                        "\xE6\x97\xA5"
                                        "bcd"));
    info = InfoOf(folder);
    EXPECT_EQ(info.creator, UInt32('?\?\?\?'));
}

TEST(CFBundlePackageInfo, GuessesTheTypeFromTheExtension) {
    const std::pair<const char*, UInt32> cases[] = {
        {"A.app", 'APPL'},       {"A.debug", 'APPL'},  {"A.profile", 'APPL'}, {"A.service", 'APPL'},
        {"A.framework", 'FMWK'}, {"A.plugin", 'BNDL'}, {"A", 'BNDL'}};
    for (const auto& [name, type] : cases) {
        BundleFolder folder(name);
        folder.Write("Contents/nothing", "");
        const PackageInfo info = InfoOf(folder);
        EXPECT_TRUE(info.isPackage) << name;
        EXPECT_EQ(info.type, type) << name;
        EXPECT_EQ(info.creator, UInt32('?\?\?\?')) << name;
    }
}

TEST(CFBundlePackageInfo, LeavesTheResultsAloneForAnOrdinaryFolder) {
    BundleFolder folder("Folder");
    const PackageInfo info = InfoOf(folder);
    EXPECT_FALSE(info.isPackage);
    EXPECT_EQ(info.type, 1u);
    EXPECT_EQ(info.creator, 2u);
    UInt32 type = 0, creator = 0;
    CFBundleGetPackageInfo(folder.Bundle(), &type, &creator);
    EXPECT_EQ(type, UInt32('BNDL'));
    EXPECT_EQ(creator, UInt32('?\?\?\?'));
    CFBundleGetPackageInfo(folder.Bundle(), nullptr, nullptr);
}

TEST(CFBundle, IsTheSameObjectForTheSameLocation) {
    BundleFolder folder;
    const auto one = folder.Bundle(), other = folder.Bundle();
    EXPECT_EQ(static_cast<CFBundleRef>(one), static_cast<CFBundleRef>(other));
    EXPECT_EQ(CFGetRetainCount(one), 2);
}

TEST(CFBundle, IsMadeOfAnyFolderAndOfNothingElse) {
    BundleFolder folder("Plain");
    EXPECT_TRUE(folder.Bundle());
    folder.Write("file", "x");
    const Ref<CFURLRef> file(carbon::UrlFromPath(folder.Path() + "/file", false));
    EXPECT_FALSE(CFBundleCreate(nullptr, file));
    const Ref<CFURLRef> missing(carbon::UrlFromPath(folder.Path() + "/missing", true));
    EXPECT_FALSE(CFBundleCreate(nullptr, missing));
    EXPECT_FALSE(CFBundleCreate(nullptr, nullptr));
}

TEST(CFBundle, TakesAMalformedPropertyListForAnEmptyOne) {
    BundleFolder folder;
    for (const char* bytes :
         {"", "garbage", "<plist><dict><key>a</key>", "bplist00", "bplist00\xD1"}) {
        folder.Write("Contents/Info.plist", bytes);
        const auto bundle = folder.Bundle();
        EXPECT_EQ(CFDictionaryGetCount(CFBundleGetInfoDictionary(bundle)), 0) << bytes;
        EXPECT_EQ(CFBundleGetVersionNumber(bundle), 0u) << bytes;
    }
}

TEST(CFBundle, FindsInfoPlistInEveryLayoutAndWithoutCase) {
    for (const char* file : {"Contents/Info.plist", "Contents/INFO.PLIST",
                             "Support Files/Info.plist", "Resources/Info.plist", "info.plist"}) {
        BundleFolder folder;
        folder.WriteInfo(BundleFolder::Pair("CFBundleIdentifier", "org.example.test"), file);
        EXPECT_EQ(Text(CFBundleGetIdentifier(folder.Bundle())), "org.example.test") << file;
    }
}

TEST(CFBundle, AnswersNullForWhatIsMissing) {
    BundleFolder folder;
    const auto bundle = folder.Bundle();
    EXPECT_FALSE(CFBundleGetIdentifier(bundle));
    EXPECT_FALSE(CFBundleGetValueForInfoDictionaryKey(bundle, CFSTR("CFBundleName")));
    EXPECT_FALSE(CFBundleGetValueForInfoDictionaryKey(nullptr, CFSTR("CFBundleName")));
    EXPECT_FALSE(CFBundleGetValueForInfoDictionaryKey(bundle, nullptr));
    EXPECT_FALSE(CFBundleCopyExecutableURL(bundle));
}

TEST(CFBundle, PrefersTheValueInTheUsersLanguage) {
    BundleFolder folder;
    folder.WriteInfo(BundleFolder::Pair("CFBundleName", "Plain") +
                     BundleFolder::Pair("Other", "Kept"));
    folder.Write("Contents/Resources/French.lproj/InfoPlist.strings",
                 "/* name */ \"CFBundleName\" = \"Fran\xC3\xA7"
                 "ais\\n\";\n");
    folder.Write("Contents/Resources/English.lproj/InfoPlist.strings",
                 std::string("\xFE\xFF\0N\0=\0E\0;", 10));
    setenv("LC_ALL", "fr_CA.UTF-8", 1);
    const auto bundle = folder.Bundle();
    const auto value = [&](CFStringRef inKey) {
        return Text(static_cast<CFStringRef>(CFBundleGetValueForInfoDictionaryKey(bundle, inKey)));
    };
    EXPECT_EQ(value(kCFBundleNameKey),
              "Fran\xC3\xA7"
              "ais\n");
    EXPECT_EQ(value(CFSTR("Other")), "Kept");
    EXPECT_EQ(CFDictionaryGetCount(CFBundleGetLocalInfoDictionary(bundle)), 1);
    unsetenv("LC_ALL");
}

TEST(CFBundle, ReadsStringsFilesInUTF16) {
    BundleFolder folder;
    folder.WriteInfo(BundleFolder::Pair("N", "Plain"));
    folder.Write("Contents/Resources/English.lproj/InfoPlist.strings",
                 std::string("\xFE\xFF\0N\0=\0E\0;", 10));
    setenv("LC_ALL", "C", 1);
    const auto bundle = folder.Bundle();
    const CFTypeRef value = CFBundleGetValueForInfoDictionaryKey(bundle, CFSTR("N"));
    EXPECT_EQ(Text(static_cast<CFStringRef>(value)), "E");
    unsetenv("LC_ALL");
}

TEST(CFBundle, FindsItsProgramInContentsLinuxFirst) {
    BundleFolder folder;
    folder.WriteInfo(BundleFolder::Pair("CFBundleExecutable", "program"));
    const auto path = [&] {
        const Ref<CFURLRef> url(CFBundleCopyExecutableURL(folder.Bundle()));
        return url ? carbon::PathFromUrl(url).value() : std::string();
    };
    EXPECT_EQ(path(), "");
    folder.Write("program", "");
    EXPECT_EQ(path(), folder.Path() + "/program");
    folder.Write("Contents/MacOS/program", "");
    EXPECT_EQ(path(), folder.Path() + "/Contents/MacOS/program");
    folder.Write("Contents/Linux/program", "");
    EXPECT_EQ(path(), folder.Path() + "/Contents/Linux/program");
}

TEST(CFBundle, NeverLeavesItselfForItsProgram) {
    BundleFolder folder;
    folder.Write("Contents/Linux/x", "");
    std::ofstream(folder.Root() / "outside") << "x";
    folder.WriteInfo(BundleFolder::Pair("CFBundleExecutable", "../../../outside"));
    EXPECT_FALSE(CFBundleCopyExecutableURL(folder.Bundle()));
}

TEST(CFBundle, OfAProgramIsTheFolderAroundIt) {
    const CFBundleRef main = CFBundleGetMainBundle();
    ASSERT_TRUE(main);
    const Ref<CFURLRef> url(CFBundleCopyBundleURL(main));
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(carbon::PathFromUrl(url), program.parent_path().string());
    EXPECT_EQ(CFBundleGetMainBundle(), main);
}

TEST(CFBundle, IsFoundByItsIdentifierWhileItLives) {
    BundleFolder folder;
    folder.WriteInfo(BundleFolder::Pair("CFBundleIdentifier", "org.example.found"));
    EXPECT_FALSE(CFBundleGetBundleWithIdentifier(CFSTR("org.example.found")));
    const auto bundle = folder.Bundle();
    EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("org.example.found")), bundle);
}

TEST(BundleFacts, FollowEveryChangeOfTheBundle) {
    BundleFolder folder;
    folder.WriteInfo(BundleFolder::Pair("CFBundleName", "First"));
    EXPECT_EQ(carbon::FactsOfBundle(folder.Path())->name, "First");
    folder.WriteInfo(BundleFolder::Pair("CFBundleName", "Other"));
    EXPECT_EQ(carbon::FactsOfBundle(folder.Path())->name, "Other");
    folder.Write("Contents/PkgInfo", "APPLaaaa");
    EXPECT_EQ(carbon::FactsOfBundle(folder.Path())->creator, UInt32('aaaa'));
    folder.Write("Contents/PkgInfo", "APPLbbbb");
    EXPECT_EQ(carbon::FactsOfBundle(folder.Path())->creator, UInt32('bbbb'));
    std::filesystem::remove_all(folder.Path());
    EXPECT_FALSE(carbon::FactsOfBundle(folder.Path()));
}

// A complete bundle that has been left alone for long enough to be trusted.
class QuietBundle : public testing::Test {
  protected:
    void SetUp() override {
        mFolder.WriteInfo(BundleFolder::Pair("CFBundleName", "First") +
                          BundleFolder::Pair("CFBundleExecutable", "Test"));
        mFolder.Write("Contents/PkgInfo", "APPLaaaa");
        mFolder.Write("Contents/Linux/Test", "");
        AwaitTrust(mFolder.Path());
    }

    static void AwaitTrust(const std::string& inPath) {
        const auto changed = fs::last_write_time(inPath + "/Contents/PkgInfo");
        while (fs::file_time_type::clock::now() < changed + std::chrono::milliseconds(150))
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        const auto facts = carbon::FactsOfBundle(inPath);
        ASSERT_TRUE(facts);
        while (carbon::FactsOfBundle(inPath) != carbon::FactsOfBundle(inPath)) continue;
    }
    std::string Name(const std::string& inPath) const {
        const auto facts = carbon::FactsOfBundle(inPath);
        return facts ? facts->name : "none";
    }
    // Another bundle beside it, of another name.
    std::string WriteOther() const {
        const fs::path other = mFolder.Root() / "Other.app";
        fs::copy(mFolder.Path(), other, fs::copy_options::recursive);
        std::ofstream(other / "Contents/Info.plist")
            << "<plist version=\"1.0\"><dict>" << BundleFolder::Pair("CFBundleName", "Other")
            << BundleFolder::Pair("CFBundleExecutable", "Test") << "</dict></plist>";
        return other.string();
    }

    BundleFolder mFolder;
};

TEST_F(QuietBundle, IsTheSameObjectAsLongAsNothingChanges) {
    EXPECT_EQ(carbon::FactsOfBundle(mFolder.Path()), carbon::FactsOfBundle(mFolder.Path()));
}

TEST_F(QuietBundle, IsFollowedWhenAFileIsWrittenInPlace) {
    mFolder.Write("Contents/PkgInfo", "APPLbbbb");
    EXPECT_EQ(carbon::FactsOfBundle(mFolder.Path())->creator, UInt32('bbbb'));
}

TEST_F(QuietBundle, IsFollowedWhenAFileIsReplaced) {
    fs::rename(WriteOther() + "/Contents/Info.plist", mFolder.Path() + "/Contents/Info.plist");
    EXPECT_EQ(Name(mFolder.Path()), "Other");
}

TEST_F(QuietBundle, IsFollowedWhenItsFolderOrTheOneInItIsReplaced) {
    const std::string other = WriteOther(), path = mFolder.Path();
    fs::rename(path + "/Contents", path + "/Former");
    EXPECT_NE(Name(path), "First");
    fs::rename(other + "/Contents", path + "/Contents");
    EXPECT_EQ(Name(path), "Other");
    AwaitTrust(path);
    fs::rename(path, path + ".old");
    EXPECT_EQ(Name(path), "none");
}

TEST_F(QuietBundle, IsFollowedThroughALinkThatIsSetAnew) {
    const std::string other = WriteOther(), link = (mFolder.Root() / "Link.app").string();
    fs::create_directory_symlink(mFolder.Path(), link);
    AwaitTrust(link);
    AwaitTrust(other);
    EXPECT_EQ(Name(link), "First");
    fs::remove(link);
    fs::create_directory_symlink(other, link);
    EXPECT_EQ(Name(link), "Other");
}

TEST_F(QuietBundle, IsFollowedWhenAFileIsWrittenUnderAnotherName) {
    const fs::path outside = mFolder.Root() / "outside";
    fs::create_hard_link(mFolder.Path() + "/Contents/PkgInfo", outside);
    EXPECT_EQ(carbon::FactsOfBundle(mFolder.Path())->creator, UInt32('aaaa'));
    AwaitTrust(mFolder.Path());
    std::ofstream(outside) << "APPLcccc";
    EXPECT_EQ(carbon::FactsOfBundle(mFolder.Path())->creator, UInt32('cccc'));
}

TEST_F(QuietBundle, IsFollowedByAForkedChildToo) {
    const pid_t child = fork();
    if (child == 0) {
        mFolder.Write("Contents/PkgInfo", "APPLbbbb");
        _exit(carbon::FactsOfBundle(mFolder.Path())->creator == UInt32('bbbb') ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(carbon::FactsOfBundle(mFolder.Path())->creator, UInt32('bbbb'));
}

TEST(BundleFacts, NameABundleWithoutDictionaryAfterItsFolder) {
    BundleFolder folder("Burner.app");
    folder.Write("Contents/Linux/Burner", "");
    const auto facts = carbon::FactsOfBundle(folder.Path());
    EXPECT_EQ(facts->name, "Burner");
    EXPECT_EQ(facts->executablePath, folder.Path() + "/Contents/Linux/Burner");
}

}  // namespace
