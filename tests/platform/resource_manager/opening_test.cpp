// Making, opening and closing resource files.
#include <Carbon/LowMem.h>

#include "platform/resource_manager/ForkFixture.h"

namespace {

class Opening : public ForkFixture {};

TEST_F(Opening, ANewFileHasTypeAndCreatorAndAnEmptyMap) {
    const FSSpec spec = NewFile();
    FInfo info;
    ASSERT_EQ(FSpGetFInfo(&spec, &info), noErr);
    EXPECT_EQ(info.fdCreator, OSType{'Test'});
    EXPECT_EQ(info.fdType, OSType{'rsrc'});
    EXPECT_EQ(ForkOf().size(), 286u);
    Open(spec);
    EXPECT_EQ(Count1Types(), 0);
}

TEST_F(Opening, HCreateResFileLeavesTypeAndCreatorZero) {
    const FSSpec spec = NewSpec("file");
    HCreateResFile(spec.vRefNum, spec.parID, spec.name);
    EXPECT_EQ(ResError(), noErr);
    FInfo info;
    ASSERT_EQ(FSpGetFInfo(&spec, &info), noErr);
    EXPECT_EQ(info.fdCreator, 0u);
    EXPECT_EQ(info.fdType, 0u);
    EXPECT_EQ(ForkOf().size(), 286u);
}

TEST_F(Opening, CreatingAFileThatHasAMapChangesNothing) {
    const FSSpec spec = NewFile();
    const auto number = Open(spec);
    Add('TEXT', 128, "kept");
    CloseResFile(number);
    const auto before = ForkOf();
    FSpCreateResFile(&spec, 'Othr', 'othr', smSystemScript);
    EXPECT_EQ(ResError(), dupFNErr);
    EXPECT_EQ(ForkOf(), before);
    FInfo info;
    ASSERT_EQ(FSpGetFInfo(&spec, &info), noErr);
    EXPECT_EQ(info.fdCreator, OSType{'Test'});
}

TEST_F(Opening, AFileWithoutResourcesGetsAMapAndKeepsItsTypeAndData) {
    const FSSpec spec = SpecOf(Write("file", "contents"));
    FSpCreateResFile(&spec, 'Othr', 'othr', smSystemScript);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(ForkOf().size(), 286u);
    FInfo info;
    ASSERT_EQ(FSpGetFInfo(&spec, &info), noErr);
    EXPECT_EQ(info.fdType, 0u);
    EXPECT_EQ(std::filesystem::file_size(Path("file")), 8u);
}

TEST_F(Opening, CreatingTellsWhyItCannot) {
    FSSpec spec = NewSpec("file");
    spec.parID = 0x3EFFFFFF;
    FSpCreateResFile(&spec, 0, 0, smSystemScript);
    EXPECT_EQ(ResError(), dirNFErr);
    spec.vRefNum = -9999;
    FSpCreateResFile(&spec, 0, 0, smSystemScript);
    EXPECT_EQ(ResError(), nsvErr);
    FSpCreateResFile(nullptr, 0, 0, smSystemScript);
    EXPECT_EQ(ResError(), paramErr);
    const FSSpec folder = SpecOf(MakeFolder("folder"));
    FSpCreateResFile(&folder, 0, 0, smSystemScript);
    EXPECT_EQ(ResError(), dupFNErr);
}

TEST_F(Opening, GivesMinusOneAndTheReason) {
    const FSSpec missing = NewSpec("missing");
    EXPECT_EQ(FSpOpenResFile(&missing, fsRdPerm), -1);
    EXPECT_EQ(ResError(), fnfErr);
    const FSSpec without = SpecOf(Write("without"));
    EXPECT_EQ(FSpOpenResFile(&without, fsRdPerm), -1);
    EXPECT_EQ(ResError(), eofErr);
    const FSSpec damaged = FileWithFork("damaged", std::vector<UInt8>(300, 0xEE));
    EXPECT_EQ(FSpOpenResFile(&damaged, fsRdPerm), -1);
    EXPECT_EQ(ResError(), mapReadErr);
    const FSSpec tiny = FileWithFork("tiny", {1, 2, 3});
    EXPECT_EQ(FSpOpenResFile(&tiny, fsRdPerm), -1);
    EXPECT_EQ(ResError(), mapReadErr);
    EXPECT_EQ(HOpenResFile(-9999, 0, PString("file"), fsRdPerm), -1);
    EXPECT_EQ(ResError(), nsvErr);
    EXPECT_EQ(FSpOpenResFile(nullptr, fsRdPerm), -1);
    EXPECT_EQ(ResError(), paramErr);
}

TEST_F(Opening, AFailedOpenLeavesNoForkOpen) {
    const FSSpec damaged = FileWithFork("damaged", std::vector<UInt8>(300, 0xEE));
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(FSpOpenResFile(&damaged, fsRdWrPerm), -1);
        EXPECT_EQ(ResError(), mapReadErr);
    }
}

TEST_F(Opening, PutsAFileOnTopAndMakesItCurrent) {
    const auto first = OpenNew("first");
    EXPECT_EQ(CurResFile(), first);
    const auto second = OpenNew("second");
    EXPECT_NE(first, second);
    EXPECT_EQ(CurResFile(), second);
    ResFileRefNum number = 0;
    EXPECT_EQ(GetTopResourceFile(&number), noErr);
    EXPECT_EQ(number, second);
    EXPECT_EQ(GetNextResourceFile(second, &number), noErr);
    EXPECT_EQ(number, first);
    EXPECT_EQ(GetNextResourceFile(first, &number), noErr);
    EXPECT_EQ(number, kSystemResFile);
    EXPECT_EQ(GetNextResourceFile(kSystemResFile, &number), resFNotFound);
}

TEST_F(Opening, OpensByNameAndByReference) {
    const FSSpec spec = NewFile();
    auto number = HOpenResFile(spec.vRefNum, spec.parID, spec.name, fsRdPerm);
    EXPECT_GT(number, 0);
    CloseResFile(number);
    FSRef ref;
    ASSERT_EQ(RefOf(Path("file"), &ref), noErr);
    number = FSOpenResFile(&ref, fsRdPerm);
    EXPECT_GT(number, 0);
    CloseResFile(number);
}

TEST_F(Opening, TheNumberIsThatOfAnOpenFork) {
    const auto number = OpenNew();
    SInt32 length = 0;
    EXPECT_EQ(GetEOF(number, &length), noErr);
    EXPECT_EQ(length, 286);
    CloseResFile(number);
    EXPECT_NE(GetEOF(number, &length), noErr);
}

TEST_F(Opening, AgainForWritingGivesTheSameNumberAndLeavesTheOrder) {
    const FSSpec spec = NewFile();
    const auto first = Open(spec);
    const auto other = OpenNew("other");
    EXPECT_EQ(FSpOpenResFile(&spec, fsRdWrPerm), first);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(CurResFile(), other);
}

TEST_F(Opening, AgainForReadingGivesAMapOfItsOwn) {
    const FSSpec spec = NewFile();
    const auto writer = Open(spec);
    Add('TEXT', 128, "not yet written");
    const auto reader = Open(spec, fsRdPerm);
    EXPECT_NE(reader, writer);
    EXPECT_EQ(CurResFile(), reader);
    EXPECT_EQ(Count1Resources('TEXT'), 0);
    UseResFile(writer);
    EXPECT_EQ(Count1Resources('TEXT'), 1);
}

TEST_F(Opening, ReadOnlyKeepsChangesInMemory) {
    const FSSpec spec = NewFile();
    CloseResFile(Open(spec));
    const auto before = ForkOf();
    const auto number = Open(spec, fsRdPerm);
    EXPECT_EQ(GetResFileAttrs(number), mapReadOnly);
    Add('TEXT', 128, "only here");
    UpdateResFile(number);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(TextOfResource('TEXT', 128), "only here");
    CloseResFile(number);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(ForkOf(), before);
}

TEST_F(Opening, ClosingWritesAndMakesTheNextFileCurrent) {
    const FSSpec spec = NewFile("second");
    const auto first = OpenNew("first");
    const auto second = Open(spec);
    const Handle handle = Add('TEXT', 128, "written");
    CloseResFile(second);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_EQ(CurResFile(), first);
    EXPECT_FALSE(IsHandleValid(handle));
    Open(spec, fsRdPerm);
    EXPECT_EQ(TextOfResource('TEXT', 128), "written");
}

TEST_F(Opening, ClosingLeavesDetachedHandles) {
    const FSSpec spec = NewFile();
    Open(spec);
    Add('TEXT', 128, "text");
    CloseResFile(CurResFile());
    Open(spec);
    const Handle handle = Get1Resource('TEXT', 128);
    DetachResource(handle);
    CloseResFile(CurResFile());
    EXPECT_EQ(TextIn(handle), "text");
    DisposeHandle(handle);
}

TEST_F(Opening, ClosingAnUnknownNumberIsAnErrorAndTheSystemFileIsNot) {
    CloseResFile(12345);
    EXPECT_EQ(ResError(), resFNotFound);
    CloseResFile(kSystemResFile);
    EXPECT_EQ(ResError(), noErr);
    UpdateResFile(12345);
    EXPECT_EQ(ResError(), resFNotFound);
    UpdateResFile(kSystemResFile);
    EXPECT_EQ(ResError(), noErr);
}

TEST_F(Opening, PreloadsOnlyWhileTheLoadFlagIsOn) {
    const FSSpec spec = NewFile();
    Open(spec);
    const Handle handle = Add('TEXT', 128, "early");
    WriteResource(handle);
    SetResAttrs(handle, resPreload);
    CloseResFile(CurResFile());
    Open(spec, fsRdPerm);
    SetResLoad(false);
    EXPECT_EQ(TextOfResource('TEXT', 128), "early");
    CloseResFile(CurResFile());
    Open(spec, fsRdPerm);
    EXPECT_EQ(TextOfResource('TEXT', 128), "empty handle");
}

TEST_F(Opening, PreloadsNoMoreThanTheForkHolds) {
    const FSSpec spec = NewFile();
    Open(spec);
    const std::string text(1000, 'x');
    for (ResID id = 0; id < 4; ++id) {
        const Handle handle = Add('TEXT', id, text);
        WriteResource(handle);
        SetResAttrs(handle, resPreload);
    }
    CloseResFile(CurResFile());
    auto fork = ForkOf();
    const size_t map = fork.size() - 4 * 12;
    for (size_t at = map; at < fork.size(); at += 12) {
        for (size_t i = 5; i < 8; ++i) fork[at + i] = 0;  // all have the first one's data
    }
    fork.erase(fork.begin() + 256 + 1004, fork.begin() + 256 + 4 * 1004);
    for (const size_t at : {4u, 8u}) {  // the map's place and the data's length
        const size_t number = (size_t(fork[at + 2]) << 8u | fork[at + 3]) - size_t(3 * 1004);
        fork[at + 2] = UInt8(number >> 8);
        fork[at + 3] = UInt8(number);
    }
    Open(FileWithFork("hostile", fork), fsRdPerm);
    SetResLoad(false);
    EXPECT_EQ(TextOfResource('TEXT', 0), text);
    EXPECT_EQ(TextOfResource('TEXT', 3), "empty handle");
}

TEST_F(Opening, TellsWhetherAFileIsOpen) {
    const FSSpec spec = NewFile();
    Boolean inChain = true;
    ResFileRefNum number = 0;
    EXPECT_FALSE(FSpResourceFileAlreadyOpen(&spec, &inChain, &number));
    EXPECT_FALSE(inChain);
    EXPECT_EQ(number, -1);
    const auto open = Open(spec);
    EXPECT_TRUE(FSpResourceFileAlreadyOpen(&spec, &inChain, &number));
    EXPECT_TRUE(inChain);
    EXPECT_EQ(number, open);
    DetachResourceFile(open);
    EXPECT_TRUE(FSpResourceFileAlreadyOpen(&spec, &inChain, nullptr));
    EXPECT_FALSE(inChain);
    CloseResFile(open);
    EXPECT_EQ(ResError(), noErr);
}

TEST_F(Opening, KeepsResourcesInADataForkByReference) {
    FSRef folder, ref;
    FSSpec spec;
    ASSERT_EQ(RefOf(mFolder, &folder), noErr);
    const std::u16string name = u"data.rsrc";
    const auto* units = reinterpret_cast<const UniChar*>(name.data());
    ASSERT_EQ(FSCreateResourceFile(&folder, UniCharCount(name.size()), units, kFSCatInfoNone,
                                   nullptr, 0, nullptr, &ref, &spec),
              noErr);
    EXPECT_EQ(NameOf(spec), "data.rsrc");
    std::filesystem::permissions(Path("data.rsrc"), std::filesystem::perms(0640));
    ResFileRefNum number = 0;
    ASSERT_EQ(FSOpenResourceFile(&ref, 0, nullptr, fsRdWrPerm, &number), noErr);
    Add('TEXT', 128, "in the data fork");
    UpdateResFile(number);
    EXPECT_EQ(ResError(), noErr);
    Add('TEXT', 129, "once more");
    CloseResFile(number);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_FALSE(std::filesystem::exists(Path("._data.rsrc")));
    EXPECT_EQ(std::filesystem::status(Path("data.rsrc")).permissions(),
              std::filesystem::perms(0640));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(mFolder), {}), 1);
    ASSERT_EQ(RefOf(Path("data.rsrc"), &ref), noErr);
    ASSERT_EQ(FSOpenResourceFile(&ref, 0, nullptr, fsRdPerm, &number), noErr);
    EXPECT_EQ(TextOfResource('TEXT', 128), "in the data fork");
    EXPECT_EQ(TextOfResource('TEXT', 129), "once more");
}

TEST_F(Opening, KnowsTwoForksByName) {
    const FSSpec spec = NewFile();
    FSRef ref;
    ASSERT_EQ(FSpMakeFSRef(&spec, &ref), noErr);
    const auto* resources = reinterpret_cast<const UniChar*>(u"RESOURCE_FORK");
    ResFileRefNum number = 0;
    EXPECT_EQ(FSOpenResourceFile(&ref, 13, resources, fsRdPerm, &number), noErr);
    EXPECT_GT(number, 0);
    EXPECT_EQ(FSOpenResourceFile(&ref, 8, resources, fsRdPerm, &number), errFSBadForkName);
    EXPECT_EQ(number, -1);
    EXPECT_EQ(ResError(), errFSBadForkName);
    EXPECT_EQ(FSOpenResourceFile(&ref, 0, nullptr, fsRdPerm, &number), eofErr);
}

TEST_F(Opening, FSCreateResFileTakesTheFinderInformation) {
    FSRef folder;
    ASSERT_EQ(RefOf(mFolder, &folder), noErr);
    FSCatalogInfo info{};
    const FInfo finder = {'Type', 'Crea', 0, {0, 0}, 0};
    std::memcpy(info.finderInfo, &finder, sizeof finder);
    FSSpec spec;
    const auto* name = reinterpret_cast<const UniChar*>(u"n\u00e9");
    FSCreateResFile(&folder, 2, name, kFSCatInfoFinderInfo, &info, nullptr, &spec);
    ASSERT_EQ(ResError(), noErr);
    FInfo told;
    ASSERT_EQ(FSpGetFInfo(&spec, &told), noErr);
    EXPECT_EQ(told.fdType, OSType{'Type'});
    EXPECT_EQ(told.fdCreator, OSType{'Crea'});
    const auto number = Open(spec, fsRdPerm);
    EXPECT_EQ(CurResFile(), number);
    FSCreateResFile(&folder, 2, name, kFSCatInfoNone, nullptr, nullptr, nullptr);
    EXPECT_EQ(ResError(), dupFNErr);
    FSCreateResFile(&folder, 0, name, kFSCatInfoNone, nullptr, nullptr, nullptr);
    EXPECT_EQ(ResError(), errFSMissingName);
    const auto* parent = reinterpret_cast<const UniChar*>(u"..");
    FSCreateResFile(&folder, 2, parent, kFSCatInfoNone, nullptr, nullptr, nullptr);
    EXPECT_NE(ResError(), noErr);
}

TEST_F(Opening, FSCreateResourceForkGivesAMapToAnExistingFile) {
    FSRef ref;
    ASSERT_EQ(RefOf(Write("file"), &ref), noErr);
    const auto* resources = reinterpret_cast<const UniChar*>(u"RESOURCE_FORK");
    EXPECT_EQ(FSCreateResourceFork(&ref, 13, resources, 0), noErr);
    EXPECT_EQ(ForkOf().size(), 286u);
    EXPECT_EQ(FSCreateResourceFork(&ref, 13, resources, 0), dupFNErr);
    EXPECT_EQ(FSCreateResourceFork(&ref, 0, nullptr, 0), dupFNErr);
}

TEST_F(Opening, ALockedFileIsReadAndGetsNoMap) {
    const FSSpec spec = NewFile();
    const FSSpec empty = SpecOf(Write("empty"));
    ASSERT_EQ(HSetFLock(spec.vRefNum, spec.parID, spec.name), noErr);
    ASSERT_EQ(HSetFLock(empty.vRefNum, empty.parID, empty.name), noErr);
    EXPECT_EQ(FSpOpenResFile(&spec, fsRdWrPerm), -1);
    EXPECT_EQ(ResError(), permErr);
    EXPECT_EQ(GetResFileAttrs(Open(spec, fsCurPerm)), mapReadOnly);
    FSpCreateResFile(&empty, 0, 0, smSystemScript);
    EXPECT_EQ(ResError(), permErr);
    EXPECT_TRUE(ForkOf("empty").empty());
}

TEST_F(Opening, ALockedVolumeIsRead) {
    const std::string folder = MakeFolder("volume");
    const FSSpec before = SpecOf(Write("volume/file"));
    FSpCreateResFile(&before, 0, 0, smSystemScript);
    FSVolumeRefNum volume = 0;
    ASSERT_EQ(PlatformMountFolderWithOptions(folder.c_str(), "Locked", kPlatformMountSoftwareLocked,
                                             &volume),
              noErr);
    const FSSpec spec = SpecOf(folder + "/file");
    EXPECT_EQ(spec.vRefNum, volume);
    EXPECT_EQ(FSpOpenResFile(&spec, fsRdWrPerm), -1);
    EXPECT_EQ(ResError(), wrPermErr);
    CloseResFile(Open(spec, fsRdPerm));
    HCreateResFile(volume, fsRtDirID, PString("new"));
    EXPECT_EQ(ResError(), vLckdErr);
    FSRef root;
    ASSERT_EQ(RefOf(folder, &root), noErr);
    const auto* name = reinterpret_cast<const UniChar*>(u"new");
    FSCreateResFile(&root, 3, name, kFSCatInfoNone, nullptr, nullptr, nullptr);
    EXPECT_EQ(ResError(), vLckdErr);
    EXPECT_FALSE(std::filesystem::exists(folder + "/new"));
    EXPECT_EQ(PlatformUnmountFolder(volume), noErr);
}

TEST_F(Opening, FollowsAFileThatWasRenamedWhileOpen) {
    const auto number = OpenNew("before");
    Add('TEXT', 128, "follows");
    std::filesystem::rename(Path("before"), Path("after"));
    std::filesystem::rename(Path("._before"), Path("._after"));
    CloseResFile(number);
    EXPECT_EQ(ResError(), noErr);
    EXPECT_FALSE(std::filesystem::exists(Path("._before")));
    Open(SpecOf(Path("after")), fsRdPerm);
    EXPECT_EQ(TextOfResource('TEXT', 128), "follows");
}

}  // namespace
