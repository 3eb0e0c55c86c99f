// What a catalog search compares: each criterion, alone and with others, and what is refused.
#include <sys/xattr.h>

#include "platform/catalog_search/SearchFixture.h"

namespace {

using CatalogSearch = SearchFixture;

TEST_F(CatalogSearch, FindsNamesByAPartWithoutRegardToCase) {
    Write("disk/Report one");
    Write("disk/other");
    MakeFolder("disk/folder/REPORTS");
    Write("disk/folder/REPORTS/a report");
    EXPECT_EQ(Search(mVolume, fsSBPartialName).Name("rePort").Names(),
              (Strings{"Report one", "REPORTS", "a report"}));
    EXPECT_EQ(Search(mVolume, fsSBPartialName).Name("rePort").OnlyFiles().Names(),
              (Strings{"Report one", "a report"}));
    EXPECT_EQ(Search(mVolume, fsSBPartialName).Name("rePort").OnlyFolders().Names(),
              (Strings{"REPORTS"}));
}

TEST_F(CatalogSearch, FindsWholeNamesWithAccentsMeaningSomething) {
    Write("disk/resume");
    Write("disk/R\xC3\xA9sum\xC3\xA9");
    Write("disk/resumes");
    EXPECT_EQ(Search(mVolume, fsSBFullName).Name("RESUME").Names(), (Strings{"resume"}));
    EXPECT_EQ(Search(mVolume, fsSBFullName).Name("r\x83sum\x8E").Names(),
              (Strings{"R\x8Esum\x8E"}));
}

TEST_F(CatalogSearch, FindsTheNameWithASlashThatIsAColonOnDisk) {
    Write("disk/a:b");
    EXPECT_EQ(Search(mVolume, fsSBPartialName).Name("a/").Names(), (Strings{"a/b"}));
}

TEST_F(CatalogSearch, FindsShortenedNames) {
    const auto path = Write("disk/" + std::string(100, 'n') + ".txt");
    const auto name = NameOf(SpecOf(path));
    ASSERT_NE(name.find('#'), std::string::npos);
    EXPECT_EQ(Search(mVolume, fsSBFullName).Name(name).Names(), (Strings{name}));
    EXPECT_EQ(Search(mVolume, fsSBPartialName).Name("nnn").Names(), (Strings{name}));
}

TEST_F(CatalogSearch, FindsTheVolumeItselfAsAFolder) {
    Write("disk/disk");
    EXPECT_EQ(Search(mVolume, fsSBFullName).Name("disk").OnlyFolders().Names(), (Strings{"Disk"}));
    Search search(mVolume, fsSBFullName);
    ASSERT_EQ(search.Name("disk").OnlyFolders().Run(), eofErr);
    EXPECT_EQ(SInt32(search.matches[0].parID), fsRtParID);
}

TEST_F(CatalogSearch, FindsFilesByCreatorAndType) {
    Sign(Write("disk/one"), 'ttxt', 'TEXT');
    Sign(Write("disk/two"), 'ttxt', 'APPL');
    MakeFolder("disk/folder");
    Sign(Write("disk/folder/three"), 'Mine', 'TEXT');
    Write("disk/none");
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('ttxt', 'TEXT').Names(), (Strings{"one"}));
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('ttxt', 0).Names(), (Strings{"one", "two"}));
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature(0, 'TEXT').Names(), (Strings{"one", "three"}));
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature(0, 0).Names(),
              (Strings{"one", "two", "three", "none"}));
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('Else', 0).Names(), (Strings{}));
}

TEST_F(CatalogSearch, ComparesFinderInformationBitByBit) {
    const auto path = Write("disk/file");
    const auto change = [](carbon::Metadata* ioMetadata) {
        FInfo info{};
        info.fdFlags = kIsInvisible | kHasBundle;
        std::memcpy(ioMetadata->finderInfo, &info, sizeof info);
        FXInfo more{};
        more.fdPutAway = 77;
        std::memcpy(ioMetadata->extFinderInfo, &more, sizeof more);
    };
    ASSERT_EQ(carbon::ChangeMetadata(path, change), noErr);
    Search flags(mVolume, fsSBFlFndrInfo);
    flags.OnlyFiles();
    flags.least.hFileInfo.ioFlFndrInfo.fdFlags = kIsInvisible;
    flags.most.hFileInfo.ioFlFndrInfo.fdFlags = kIsInvisible;
    EXPECT_EQ(flags.Names(), (Strings{"file"}));
    flags.most.hFileInfo.ioFlFndrInfo.fdFlags = kIsInvisible | kHasBundle;
    EXPECT_EQ(flags.Again().Names(), (Strings{}));
    Search more(mVolume, fsSBFlXFndrInfo);
    more.OnlyFiles();
    more.least.hFileInfo.ioFlXFndrInfo.fdPutAway = 77;
    more.most.hFileInfo.ioFlXFndrInfo.fdPutAway = -1;
    EXPECT_EQ(more.Names(), (Strings{"file"}));
}

TEST_F(CatalogSearch, ReadsFinderInformationFromAnAttributeToo) {
    const auto path = Write("disk/file");
    std::string info(32, '\0');
    info.replace(0, 8, "TEXTttxt");
    if (setxattr(path.c_str(), "user.com.apple.FinderInfo", info.data(), info.size(), 0) != 0) {
        GTEST_SKIP() << "no attributes here";
    }
    EXPECT_EQ(Search(mVolume).OnlyFiles().Signature('ttxt', 'TEXT').Names(), (Strings{"file"}));
}

TEST_F(CatalogSearch, FindsLockedFiles) {
    Write("disk/open");
    Lock(Write("disk/locked"));
    Search search(mVolume);
    search.OnlyFiles();
    search.least.hFileInfo.ioFlAttrib = kioFlAttribLockedMask;
    search.most.hFileInfo.ioFlAttrib = kioFlAttribDirMask | kioFlAttribLockedMask;
    EXPECT_EQ(search.Names(), (Strings{"locked"}));
    search.least.hFileInfo.ioFlAttrib = 0;
    EXPECT_EQ(search.Again().Names(), (Strings{"open"}));
}

TEST_F(CatalogSearch, ComparesLengthsWithBothEndsOfTheRange) {
    Write("disk/three", "123");
    Write("disk/five", "12345");
    Write("disk/ten", "1234567890");
    Search search(mVolume, fsSBFlLgLen);
    search.OnlyFiles();
    search.least.hFileInfo.ioFlLgLen = 3;
    search.most.hFileInfo.ioFlLgLen = 5;
    EXPECT_EQ(search.Names(), (Strings{"three", "five"}));
    std::ofstream(Path("disk/ten"), std::ios::trunc) << "1234";  // its folder's times stay
    EXPECT_EQ(search.Again().Names(), (Strings{"three", "five", "ten"}));
}

TEST_F(CatalogSearch, ComparesLengthsOfResourceForks) {
    Write("disk/without");
    const auto path = Write("disk/with");
    const UInt8 fork[] = {1, 2, 3};
    ASSERT_EQ(carbon::ReplaceResourceFork(path, fork), noErr);
    Search search(mVolume, fsSBFlRLgLen);
    search.OnlyFiles();
    search.least.hFileInfo.ioFlRLgLen = 1;
    search.most.hFileInfo.ioFlRLgLen = 3;
    EXPECT_EQ(search.Names(), (Strings{"with"}));
}

TEST_F(CatalogSearch, ComparesDatesInLocalTime) {
    const auto path = Write("disk/old");
    Write("disk/new");
    const auto then = std::filesystem::last_write_time(path) - std::chrono::hours(24 * 365);
    std::filesystem::last_write_time(path, then);
    UInt32 now = 0;
    GetDateTime(&now);
    Search search(mVolume, fsSBFlMdDat);
    search.OnlyFiles();
    search.least.hFileInfo.ioFlMdDat = now - 3600;
    search.most.hFileInfo.ioFlMdDat = now + 3600;
    EXPECT_EQ(search.Names(), (Strings{"new"}));
    search.least.hFileInfo.ioFlMdDat = now - 366 * 86400;
    search.most.hFileInfo.ioFlMdDat = now - 364 * 86400;
    EXPECT_EQ(search.Again().Names(), (Strings{"old"}));
    search.block.ioSearchBits = fsSBFlAttrib | fsSBFlBkDat;
    EXPECT_EQ(search.Again().Names(), (Strings{"old", "new"})) << "both never backed up";
}

TEST_F(CatalogSearch, ComparesTheNumberOfItemsInAFolder) {
    MakeFolder("disk/empty");
    MakeFolder("disk/two");
    Write("disk/two/a");
    Write("disk/two/b");
    Search search(mVolume, fsSBDrNmFls);
    search.OnlyFolders();
    search.least.dirInfo.ioDrNmFls = 1;
    search.most.dirInfo.ioDrNmFls = 2;
    EXPECT_EQ(search.Names(), (Strings{"two", "Disk"}));
}

TEST_F(CatalogSearch, ComparesTheParent) {
    const SInt32 folder = NumberOf(MakeFolder("disk/folder"));
    Write("disk/outside");
    Write("disk/folder/inside");
    Search search(mVolume, fsSBFlParID);
    search.least.hFileInfo.ioFlParID = folder;
    search.most.hFileInfo.ioFlParID = folder;
    EXPECT_EQ(search.Names(), (Strings{"inside"}));
}

TEST_F(CatalogSearch, WantsAllCriteriaToHold) {
    Sign(Write("disk/a report"), 'ttxt', 'TEXT');
    Sign(Write("disk/a letter"), 'ttxt', 'TEXT');
    Write("disk/another report");
    EXPECT_EQ(
        Search(mVolume, fsSBPartialName).Name("report").OnlyFiles().Signature('ttxt', 0).Names(),
        (Strings{"a report"}));
}

TEST_F(CatalogSearch, KeepsFindingTheOtherKindWhenNegated) {
    Sign(Write("disk/text"), 'ttxt', 'TEXT');
    Write("disk/plain");
    MakeFolder("disk/folder");
    EXPECT_EQ(Search(mVolume, fsSBNegate).OnlyFiles().Signature('ttxt', 0).Names(),
              (Strings{"plain", "folder", "Disk"}));
    EXPECT_EQ(Search(mVolume, fsSBPartialName | fsSBNegate).Name("l").Names(),
              (Strings{"text", "Disk"}));
}

TEST_F(CatalogSearch, FindsEverythingWithoutCriteria) {
    Write("disk/file");
    MakeFolder("disk/folder");
    EXPECT_EQ(Search(mVolume).Names(), (Strings{"file", "folder", "Disk"}));
}

TEST_F(CatalogSearch, TakesLinksForFilesAndNeverFollowsThem) {
    MakeFolder("disk/folder");
    Write("disk/folder/file");
    std::filesystem::create_symlink(Path("disk"), Path("disk/folder/link"));
    EXPECT_EQ(Search(mVolume).OnlyFiles().Names(), (Strings{"file", "link"}));
}

TEST_F(CatalogSearch, HidesCompanions) {
    Sign(Write("disk/file"), 'ttxt', 'TEXT');
    EXPECT_EQ(Search(mVolume).OnlyFiles().Names(), (Strings{"file"}));
}

TEST_F(CatalogSearch, RefusesCriteriaThatMakeNoSense) {
    EXPECT_EQ(PBCatSearchSync(nullptr), paramErr);
    const auto refuses = [&](SInt32 inBits, auto inChange) {
        Search search(mVolume, inBits);
        inChange(search);
        EXPECT_EQ(search.Run(), paramErr) << inBits;
        EXPECT_EQ(search.block.ioActMatchCount, 0);
    };
    const auto asIs = [](Search&) {};
    refuses(fsSBFullName, asIs);  // no name
    refuses(fsSBPartialName, [](Search& ioSearch) { ioSearch.Name(""); });
    refuses(fsSBPartialName, [](Search& ioSearch) { ioSearch.Name(std::string(64, 'x')); });
    refuses(0, [](Search& ioSearch) { ioSearch.block.ioMatchPtr = nullptr; });
    refuses(0, [](Search& ioSearch) { ioSearch.block.ioSearchInfo1 = nullptr; });
    refuses(0, [](Search& ioSearch) { ioSearch.block.ioReqMatchCount = -1; });
    refuses(0, [](Search& ioSearch) { ioSearch.most.hFileInfo.ioNamePtr = ioSearch.name; });
    refuses(fsSBFlMdDat, [](Search& ioSearch) { ioSearch.block.ioSearchInfo2 = nullptr; });
    refuses(fsSBFlLgLen, asIs);  // of folders too
    refuses(fsSBDrNmFls, asIs);  // of files too
    refuses(fsSBDrNmFls, [](Search& ioSearch) { ioSearch.OnlyFiles(); });
    refuses(fsSBFlRPyLen, [](Search& ioSearch) { ioSearch.OnlyFolders(); });
    refuses(fsSBFlAttrib, [](Search& ioSearch) {
        ioSearch.most.hFileInfo.ioFlAttrib = kioFlAttribLockedMask;  // of folders too
    });
    refuses(fsSBFlAttrib, [](Search& ioSearch) { ioSearch.most.hFileInfo.ioFlAttrib = 0x40; });
    refuses(0x8000, asIs);
}

TEST_F(CatalogSearch, NeedsNoMasksForNames) {
    Write("disk/file");
    Search search(mVolume, fsSBPartialName);
    search.Name("file").block.ioSearchInfo2 = nullptr;
    EXPECT_EQ(search.Names(), (Strings{"file"}));
}

TEST_F(CatalogSearch, IsRefusedWhereTheVolumeHasNone) {
    FSVolumeRefNum volume = 0;
    ASSERT_EQ(PlatformMountFolderWithOptions(MakeFolder("without").c_str(), nullptr,
                                             kPlatformMountNoCatalogSearch, &volume),
              noErr);
    Search search(volume);
    EXPECT_EQ(search.Run(), paramErr);
    PlatformUnmountFolder(volume);
}

TEST_F(CatalogSearch, TakesTheVolumeByNameToo) {
    Write("disk/file");
    Search search(0, fsSBPartialName);
    Str255 volume = "\5Disk:";
    search.Name("file").block.ioNamePtr = volume;
    EXPECT_EQ(search.Names(), (Strings{"file"}));
    Search missing(-31000);
    EXPECT_EQ(missing.Run(), nsvErr);
}

}  // namespace
