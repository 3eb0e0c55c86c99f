// Aliases find their objects again: after renames, moves, replacements; and tell what is missing.
#include "platform/alias_manager/AliasFixture.h"

namespace {

using Aliases = AliasFixture;

TEST_F(Aliases, FindAnObjectThatStayedAndLeaveTheRecordAsItIs) {
    Alias alias;
    MakeAlias(mFile, alias);
    const auto bytes = alias.Bytes();
    EXPECT_EQ(Resolved(alias), mFile);
    EXPECT_FALSE(mWasChanged);
    EXPECT_EQ(alias.Bytes(), bytes);
    EXPECT_EQ(GetHandleSize(Handle(AliasHandle(alias))), GetAliasSize(alias));
}

TEST_F(Aliases, FindARenamedFileAndRememberItsNewName) {
    Alias alias;
    MakeAlias(mFile, alias);
    Move("disk/folder/file", "disk/folder/renamed");
    EXPECT_EQ(Resolved(alias), Path("disk/folder/renamed"));
    EXPECT_TRUE(mWasChanged);
    Str63 name;
    ASSERT_EQ(GetAliasInfo(alias, asiAliasName, name), noErr);
    EXPECT_EQ(Pascal("renamed"), std::string(reinterpret_cast<char*>(name), name[0] + 1u));
    EXPECT_EQ(Resolved(alias), Path("disk/folder/renamed"));
    EXPECT_FALSE(mWasChanged) << "the record is up to date by now";
}

TEST_F(Aliases, FindAFileThatMovedToAnotherFolder) {
    Alias alias;
    MakeAlias(mFile, alias);
    NumberOf(Path("disk/other"));  // a folder this user works in
    Move("disk/folder/file", "disk/other/elsewhere");
    EXPECT_EQ(Resolved(alias), Path("disk/other/elsewhere"));
}

TEST_F(Aliases, FindAFileWhoseFolderMoved) {
    Alias alias;
    MakeAlias(mFile, alias);
    NumberOf(Path("disk/other"));
    Move("disk/folder", "disk/other/moved");
    EXPECT_EQ(Resolved(alias), Path("disk/other/moved/file"));
}

TEST_F(Aliases, FindAFolderThatMoved) {
    Alias alias;
    MakeAlias(Path("disk/folder"), alias);
    Move("disk/folder", "disk/other/moved");
    NumberOf(Path("disk/other"));
    EXPECT_EQ(Resolved(alias), Path("disk/other/moved"));
}

TEST_F(Aliases, FindTheVolumeItself) {
    Alias alias;
    MakeAlias(Path("disk"), alias);
    EXPECT_EQ(Resolved(alias), Path("disk"));
    EXPECT_EQ(mTarget.parID, fsRtParID);
}

TEST_F(Aliases, LookForTheNumberFirstWhenAsked) {
    Alias alias;
    MakeAlias(mFile, alias);
    Move("disk/folder/file", "disk/folder/old");
    Write("disk/folder/file", "replacement");
    EXPECT_EQ(Resolved(alias, nullptr, kARMTryFileIDFirst), Path("disk/folder/old"));
}

TEST_F(Aliases, KeepPreferringWhatWasPutInTheRecordedPlace) {
    Alias alias;
    MakeAlias(mFile, alias);
    Move("disk/folder/file", "disk/folder/old");
    Write("disk/folder/file", "replacement");
    EXPECT_EQ(Resolved(alias), mFile);
    EXPECT_TRUE(mWasChanged);
    EXPECT_EQ(Resolved(alias, nullptr, kARMTryFileIDFirst), mFile);
}

TEST_F(Aliases, DoNotTakeAFolderForAFile) {
    Alias alias;
    MakeAlias(mFile, alias);
    std::filesystem::remove(mFile);
    MakeFolder("disk/folder/file");
    EXPECT_EQ(Resolved(alias), "error -43");
}

TEST_F(Aliases, TellThePlaceOfAMissingFileForMakingItAnew) {
    Alias alias;
    MakeAlias(mFile, alias);
    const FSSpec spec = SpecOf(mFile);
    std::filesystem::remove(mFile);
    EXPECT_EQ(Resolved(alias), "error -43");
    EXPECT_EQ(mTarget.vRefNum, spec.vRefNum);
    EXPECT_EQ(SInt32(mTarget.parID), SInt32(spec.parID));
    EXPECT_EQ(NameOf(mTarget), "file");
}

TEST_F(Aliases, TellWhenTheFolderIsMissingToo) {
    Alias alias;
    MakeAlias(mFile, alias);
    std::filesystem::remove_all(Path("disk/folder"));
    EXPECT_EQ(Resolved(alias), "error -120");
}

TEST_F(Aliases, TellWhenTheVolumeIsMissing) {
    Alias alias;
    MakeAlias(mFile, alias);
    ASSERT_EQ(PlatformUnmountFolder(mVolume), noErr);
    EXPECT_EQ(Resolved(alias), "error -35");
    ASSERT_EQ(PlatformMountFolder(Path("disk").c_str(), "Disk", &mVolume), noErr);
    EXPECT_EQ(Resolved(alias), mFile);
}

TEST_F(Aliases, FindTheVolumeUnderAnotherName) {
    Alias alias;
    MakeAlias(mFile, alias);
    ASSERT_EQ(PlatformUnmountFolder(mVolume), noErr);
    ASSERT_EQ(PlatformMountFolder(Path("disk").c_str(), "Renamed", &mVolume), noErr);
    EXPECT_EQ(Resolved(alias), mFile);
    EXPECT_TRUE(mWasChanged);
}

TEST_F(Aliases, GoTheWayFromAFileFirst) {
    Write("disk/folder/from");
    Write("disk/folder/inner/target");
    const FSSpec from = SpecOf(Path("disk/folder/from"));
    const FSSpec target = SpecOf(Path("disk/folder/inner/target"));
    Alias alias;
    ASSERT_EQ(NewAlias(&from, &target, alias.Out()), noErr);
    std::filesystem::copy(Path("disk/folder"), Path("disk/copy"),
                          std::filesystem::copy_options::recursive);
    const FSSpec copied = SpecOf(Path("disk/copy/from"));
    EXPECT_EQ(Resolved(alias, &copied), Path("disk/copy/inner/target"));
    EXPECT_EQ(Resolved(alias, &from), Path("disk/folder/inner/target"));
}

TEST_F(Aliases, GoTheWayIntoAndOutOfFolders) {
    const std::pair<const char*, const char*> ways[] = {
        {"disk/folder", "disk/folder/file"},
        {"disk/folder/file", "disk/folder"},
        {"disk/folder/file", "disk/folder/file"},
        {"disk/folder/inner", "disk/folder/file"},
    };
    for (const auto& [start, end] : ways) {
        const FSSpec from = SpecOf(Path(start)), target = SpecOf(Path(end));
        Alias alias;
        ASSERT_EQ(NewAlias(&from, &target, alias.Out()), noErr);
        EXPECT_EQ(Resolved(alias, &from), Path(end)) << start;
    }
}

TEST_F(Aliases, FallBackToThePlaceWhenTheWayEndsNowhere) {
    Write("disk/folder/from");
    const FSSpec from = SpecOf(Path("disk/folder/from")), target = SpecOf(mFile);
    Alias alias;
    ASSERT_EQ(NewAlias(&from, &target, alias.Out()), noErr);
    Move("disk/folder/from", "disk/other/from");
    const FSSpec moved = SpecOf(Path("disk/other/from"));
    EXPECT_EQ(Resolved(alias, &moved), mFile);
}

TEST_F(Aliases, AreNotMadeAcrossVolumesWithAWay) {
    const FSSpec from = SpecOf(Write("outside")), target = SpecOf(mFile);
    Alias alias;
    EXPECT_EQ(NewAlias(&from, &target, alias.Out()), diffVolErr);
    EXPECT_EQ(AliasHandle(alias), nullptr);
}

TEST_F(Aliases, AreNotMadeOfWhatIsMissing) {
    FSSpec spec = SpecOf(mFile);
    std::filesystem::remove(mFile);
    Alias alias;
    EXPECT_EQ(NewAlias(nullptr, &spec, alias.Out()), fnfErr);
    EXPECT_EQ(AliasHandle(alias), nullptr);
    spec.vRefNum = -31000;
    EXPECT_EQ(NewAlias(nullptr, &spec, alias.Out()), nsvErr);
    EXPECT_EQ(NewAlias(nullptr, nullptr, alias.Out()), paramErr);
    EXPECT_EQ(NewAlias(nullptr, &spec, nullptr), paramErr);
}

TEST_F(Aliases, OfLongNamesFindTheirFiles) {
    const std::string name(200, 'n');
    const auto path = Write("disk/folder/" + name);
    Alias alias;
    MakeAlias(path, alias);
    EXPECT_EQ(Resolved(alias), path);
    Move("disk/folder/" + name, "disk/folder/short");
    EXPECT_EQ(Resolved(alias), Path("disk/folder/short"));
}

TEST_F(Aliases, WorkInAnotherProcess) {
    Alias alias;
    MakeAlias(mFile, alias);
    Move("disk/folder/file", "disk/folder/renamed");
    std::ofstream(Path("record"), std::ios::binary) << alias.Bytes();
    EXPECT_EQ(Ask("alias " + Path("record")), "0 " + Path("disk/folder/renamed"));
}

// Big-endian, as in a descriptor.
std::string BytesOf(const FSSpec& inSpec) {
    std::string bytes(70, '\0');
    bytes[0] = char(inSpec.vRefNum >> 8);
    bytes[1] = char(inSpec.vRefNum);
    for (int i = 0; i < 4; ++i) bytes[size_t(2 + i)] = char(inSpec.parID >> (24 - 8 * i));
    bytes.replace(6, 1 + inSpec.name[0], reinterpret_cast<const char*>(inSpec.name),
                  1 + inSpec.name[0]);
    return bytes;
}

std::string Coerced(DescType inFrom, const std::string& inBytes, DescType inTo) {
    AEDesc desc = {typeNull, nullptr};
    const OSErr error = AECoercePtr(inFrom, inBytes.data(), Size(inBytes.size()), inTo, &desc);
    if (error != noErr) return "error " + std::to_string(error);
    std::string bytes(size_t(AEGetDescDataSize(&desc)), '\0');
    EXPECT_EQ(AEGetDescData(&desc, bytes.data(), Size(bytes.size())), noErr);
    AEDisposeDesc(&desc);
    return bytes;
}

TEST_F(Aliases, AreCoercedToSpecsAndReferencesOfTheirObjects) {
    Alias alias;
    MakeAlias(mFile, alias);
    Move("disk/folder/file", "disk/folder/renamed");
    const auto path = Path("disk/folder/renamed");
    EXPECT_EQ(Coerced(typeAlias, alias.Bytes(), typeFSS), BytesOf(SpecOf(path)));
    FSRef ref;
    const auto bytes = Coerced(typeAlias, alias.Bytes(), typeFSRef);
    ASSERT_EQ(bytes.size(), sizeof ref);
    std::memcpy(&ref, bytes.data(), sizeof ref);
    EXPECT_EQ(PathOf(ref), path);
    std::filesystem::remove(path);
    EXPECT_EQ(Coerced(typeAlias, alias.Bytes(), typeFSS), Error(errAECoercionFail));
    EXPECT_EQ(Coerced(typeAlias, alias.Bytes(), typeFSRef), Error(errAECoercionFail));
}

TEST_F(Aliases, AreMadeOfSpecsByCoercion) {
    Alias alias;
    alias.Set(Coerced(typeFSS, BytesOf(SpecOf(mFile)), typeAlias));
    EXPECT_EQ(Resolved(alias), mFile);
}

}  // namespace
