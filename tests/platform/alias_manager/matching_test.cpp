// Listing what an alias may mean, and files that are aliases.
#include "file_manager/metadata/metadata.h"
#include "platform/alias_manager/AliasFixture.h"

namespace {

class MatchedAliases : public AliasFixture {
  protected:
    // The paths in their order, or the error in words.
    std::vector<std::string> Matches(const Alias& inAlias, UInt32 inRules, SInt16 inRoom = 10,
                                     AliasFilterUPP inFilter = nullptr, void* inData = nullptr) {
        std::vector<FSSpec> list(size_t(inRoom) + 1);
        SInt16 count = inRoom;
        const OSErr error = MatchAlias(nullptr, inRules, inAlias, &count, list.data(),
                                       &mNeedsUpdate, inFilter, inData);
        if (error != noErr) return {Error(error)};
        std::vector<std::string> paths;
        for (SInt16 i = 0; i < count; ++i) paths.push_back(PathOf(list[size_t(i)]));
        return paths;
    }
    // A file with an alias in its resource fork, as the Finder makes them.
    FSSpec MakeAliasFile(const std::string& inName, AliasHandle inAlias) {
        const FSSpec spec = SpecOf(Write(inName));
        const auto change = [](carbon::Metadata* ioMetadata) {
            FInfo info{};
            info.fdFlags = kIsAlias;
            std::memcpy(ioMetadata->finderInfo, &info, sizeof info);
        };
        EXPECT_EQ(carbon::ChangeMetadata(Path(inName), change), noErr);
        FSpCreateResFile(&spec, 'MACS', 'alis', smSystemScript);
        EXPECT_EQ(ResError(), noErr);
        EXPECT_EQ(carbon::ChangeMetadata(Path(inName), change), noErr);
        const ResFileRefNum file = FSpOpenResFile(&spec, fsRdWrPerm);
        EXPECT_NE(file, kResFileNotOpened);
        Handle copy = Handle(inAlias);
        EXPECT_EQ(HandToHand(&copy), noErr);
        AddResource(copy, rAliasType, 0, nullptr);
        EXPECT_EQ(ResError(), noErr);
        CloseResFile(file);
        return spec;
    }

    Boolean mNeedsUpdate = false;
};

TEST_F(MatchedAliases, ListTheRecordedPlaceBeforeTheMovedOriginal) {
    Alias alias;
    MakeAlias(mFile, alias);
    EXPECT_EQ(Matches(alias, kARMSearch), (std::vector<std::string>{mFile}));
    EXPECT_FALSE(mNeedsUpdate);
    Move("disk/folder/file", "disk/folder/old");
    Write("disk/folder/file");
    const std::vector<std::string> both = {mFile, Path("disk/folder/old")};
    EXPECT_EQ(Matches(alias, kARMSearch), both);
    EXPECT_TRUE(mNeedsUpdate);
    EXPECT_EQ(Matches(alias, kARMSearch | kARMTryFileIDFirst),
              (std::vector<std::string>{both.rbegin(), both.rend()}));
    EXPECT_EQ(Matches(alias, kARMSearch, 1), (std::vector<std::string>{mFile}));
}

TEST_F(MatchedAliases, ListLookalikesWhenAskedForMore) {
    Alias alias;
    MakeAlias(mFile, alias);
    const auto change = [](carbon::Metadata* ioMetadata) {
        FInfo info{};
        info.fdType = 'TEXT';
        std::memcpy(ioMetadata->finderInfo, &info, sizeof info);
        ioMetadata->facts.created = 1000000000;
    };
    ASSERT_EQ(carbon::ChangeMetadata(mFile, change), noErr);
    MakeAlias(mFile, alias);
    const auto twin = Write("disk/folder/twin");
    ASSERT_EQ(carbon::ChangeMetadata(twin, change), noErr);
    std::filesystem::remove(mFile);
    EXPECT_EQ(Matches(alias, kARMSearch), (std::vector<std::string>{"error -43"}));
    EXPECT_EQ(Matches(alias, kARMSearchMore), (std::vector<std::string>{twin}));
}

TEST_F(MatchedAliases, FindTheirObjectAnywhereOnTheVolumeWhenAskedForMore) {
    const auto change = [](carbon::Metadata* ioMetadata) {
        FInfo info{};
        info.fdType = 'TEXT';
        info.fdCreator = 'ttxt';
        std::memcpy(ioMetadata->finderInfo, &info, sizeof info);
        ioMetadata->facts.created = 1000000000;
    };
    ASSERT_EQ(carbon::ChangeMetadata(mFile, change), noErr);
    Alias alias, folder, minimal;
    MakeAlias(mFile, alias);
    MakeAlias(Path("disk/folder/inner"), folder);
    const FSSpec spec = SpecOf(mFile);
    ASSERT_EQ(NewAliasMinimal(&spec, minimal.Out()), noErr);
    // A copy, as by another program: not the same inode, and far from its old place.
    MakeFolder("disk/far/away/from/there");
    const auto copy = Write("disk/far/away/from/there/file");
    ASSERT_EQ(carbon::ChangeMetadata(copy, change), noErr);
    const auto other = Write("disk/far/away/from/other");
    ASSERT_EQ(
        carbon::ChangeMetadata(
            other, [](carbon::Metadata* ioMetadata) { ioMetadata->facts.created = 1000000000; }),
        noErr);
    EXPECT_EQ(Matches(alias, kARMSearchMore), (std::vector<std::string>{mFile, copy}));
    std::filesystem::remove(mFile);
    std::filesystem::remove(Path("disk/folder/._file"));
    EXPECT_EQ(Matches(alias, kARMSearch), (std::vector<std::string>{"error -43"}));
    EXPECT_EQ(Matches(alias, kARMSearchMore), (std::vector<std::string>{copy}));
    EXPECT_TRUE(mNeedsUpdate);
    EXPECT_EQ(Matches(minimal, kARMSearchMore), (std::vector<std::string>{copy}));
    EXPECT_EQ(Matches(folder, kARMSearchMore).front(), Path("disk/folder/inner"));
}

TEST_F(MatchedAliases, FindNothingElsewhereOnAVolumeWithoutCatalogSearch) {
    FSVolumeRefNum plain = 0;
    const auto file = (MakeFolder("plain/folder"), Write("plain/folder/file"));
    MakeFolder("plain/other");
    ASSERT_EQ(PlatformMountFolderWithOptions(Path("plain").c_str(), "Plain",
                                             kPlatformMountNoCatalogSearch, &plain),
              noErr);
    Alias alias;
    MakeAlias(file, alias);
    std::filesystem::copy_file(file, Path("plain/other/file"));
    std::filesystem::remove(file);
    EXPECT_EQ(Matches(alias, kARMSearchMore), (std::vector<std::string>{"error -43"}));
    PlatformUnmountFolder(plain);
}

TEST_F(MatchedAliases, AskTheFilterAboutEach) {
    Alias alias;
    MakeAlias(mFile, alias);
    struct Filter {
        int calls = 0;
        bool leavesOut = true;
        static Boolean Choose(CInfoPBRec* inRecord, Boolean*, Ptr inData) {
            auto* filter = reinterpret_cast<Filter*>(inData);
            ++filter->calls;
            EXPECT_EQ(SInt32(inRecord->hFileInfo.ioFlLgLen), 8);
            return filter->leavesOut;
        }
    } filter;
    const auto procedure = NewAliasFilterUPP(Filter::Choose);
    EXPECT_EQ(Matches(alias, kARMSearch, 10, procedure, &filter),
              (std::vector<std::string>{"error -43"}));
    filter.leavesOut = false;
    EXPECT_EQ(Matches(alias, kARMSearch, 10, procedure, &filter),
              (std::vector<std::string>{mFile}));
    EXPECT_EQ(filter.calls, 2);
    DisposeAliasFilterUPP(procedure);
}

TEST_F(MatchedAliases, WantARuleAndRoom) {
    Alias alias;
    MakeAlias(mFile, alias);
    EXPECT_EQ(Matches(alias, kARMNoUI), (std::vector<std::string>{"error -50"}));
    EXPECT_EQ(Matches(alias, kARMSearch, 0), (std::vector<std::string>{"error -50"}));
}

TEST_F(MatchedAliases, LookOnAllVolumesWhenAskedTo) {
    const auto copy = MakeFolder("copy/folder");
    Write("copy/folder/file");
    Alias alias;
    MakeAlias(mFile, alias);
    ASSERT_EQ(PlatformUnmountFolder(mVolume), noErr);
    FSVolumeRefNum volume = 0;
    ASSERT_EQ(PlatformMountFolder(Path("copy").c_str(), "Copy", &volume), noErr);
    EXPECT_EQ(Matches(alias, kARMSearch | kARMMultVols),
              (std::vector<std::string>{Path("copy/folder/file")}));
    PlatformUnmountFolder(volume);
}

TEST_F(MatchedAliases, InFilesLeadToTheirObjects) {
    Alias alias;
    MakeAlias(mFile, alias);
    FSSpec spec = MakeAliasFile("disk/other/alias", alias);
    Boolean isAlias = false, isFolder = true, wasAliased = false;
    ASSERT_EQ(IsAliasFile(&spec, &isAlias, &isFolder), noErr);
    EXPECT_TRUE(isAlias);
    EXPECT_FALSE(isFolder);
    Move("disk/folder/file", "disk/folder/renamed");
    ASSERT_EQ(ResolveAliasFile(&spec, true, &isFolder, &wasAliased), noErr);
    EXPECT_TRUE(wasAliased);
    EXPECT_EQ(PathOf(spec), Path("disk/folder/renamed"));
    ASSERT_EQ(ResolveAliasFile(&spec, true, &isFolder, &wasAliased), noErr);
    EXPECT_FALSE(wasAliased) << "it is no alias file itself";
}

TEST_F(MatchedAliases, InFilesAreFollowedOneByOneOrToTheEnd) {
    Alias first, second;
    MakeAlias(Path("disk/folder"), first);
    const FSSpec inner = MakeAliasFile("disk/other/inner", first);
    MakeAlias(PathOf(inner), second);
    const FSSpec outer = MakeAliasFile("disk/other/outer", second);
    Boolean isFolder = false, wasAliased = false;
    FSSpec spec = outer;
    ASSERT_EQ(ResolveAliasFile(&spec, false, &isFolder, &wasAliased), noErr);
    EXPECT_EQ(PathOf(spec), PathOf(inner));
    EXPECT_FALSE(isFolder);
    spec = outer;
    ASSERT_EQ(ResolveAliasFile(&spec, true, &isFolder, &wasAliased), noErr);
    EXPECT_EQ(PathOf(spec), Path("disk/folder"));
    EXPECT_TRUE(isFolder);
    FSRef ref;
    ASSERT_EQ(FSpMakeFSRef(&outer, &ref), noErr);
    ASSERT_EQ(FSResolveAliasFile(&ref, true, nullptr, nullptr), noErr);
    EXPECT_EQ(PathOf(ref), Path("disk/folder"));
}

TEST_F(MatchedAliases, InFilesThatLeadInACircleLeadNowhere) {
    Alias alias;
    MakeAlias(Write("disk/other/circle"), alias);
    FSSpec spec = MakeAliasFile("disk/other/circle", alias);
    EXPECT_EQ(ResolveAliasFile(&spec, true, nullptr, nullptr), fnfErr);
    EXPECT_EQ(PathOf(spec), Path("disk/other/circle")) << "unchanged";
}

TEST_F(MatchedAliases, InFilesLeaveTheCurrentResourceFileAsItIs) {
    Alias alias;
    MakeAlias(mFile, alias);
    FSSpec spec = MakeAliasFile("disk/other/alias", alias);
    const ResFileRefNum current = CurResFile();
    ASSERT_EQ(ResolveAliasFile(&spec, true, nullptr, nullptr), noErr);
    EXPECT_EQ(CurResFile(), current);
}

TEST_F(MatchedAliases, MissingInAnAliasFileAreTold) {
    const auto path = Write("disk/other/broken");
    const auto change = [](carbon::Metadata* ioMetadata) {
        FInfo info{};
        info.fdFlags = kIsAlias;
        std::memcpy(ioMetadata->finderInfo, &info, sizeof info);
    };
    ASSERT_EQ(carbon::ChangeMetadata(path, change), noErr);
    FSSpec spec = SpecOf(path);
    EXPECT_NE(ResolveAliasFile(&spec, true, nullptr, nullptr), noErr);
    EXPECT_EQ(PathOf(spec), path);
}

}  // namespace
