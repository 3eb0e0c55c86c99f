// The records themselves: head, information, updates, minimal ones and bytes that are none.
#include "platform/alias_manager/AliasFixture.h"

namespace {

using AliasRecords = AliasFixture;

std::string TextIn(AliasHandle inAlias, AliasInfoType inIndex) {
    Str63 text;
    const OSErr error = GetAliasInfo(inAlias, inIndex, text);
    if (error != noErr) return "error " + std::to_string(error);
    return {reinterpret_cast<char*>(text) + 1, text[0]};
}

TEST_F(AliasRecords, BeginWithUserTypeAndSizeBigEndian) {
    Alias alias;
    MakeAlias(mFile, alias);
    EXPECT_EQ(GetAliasUserType(alias), 0u);
    SetAliasUserType(alias, 'Fv8k');
    const auto bytes = alias.Bytes();
    EXPECT_EQ(bytes.substr(0, 4), "Fv8k");
    EXPECT_EQ(UInt8(bytes[4]) * 256u + UInt8(bytes[5]), bytes.size());
    EXPECT_EQ(GetAliasSize(alias), Size(bytes.size()));
    EXPECT_EQ(GetAliasUserType(alias), UInt32('Fv8k'));
    EXPECT_EQ(GetAliasSize(nullptr), 0);
    EXPECT_EQ(GetAliasUserTypeFromPtr(nullptr), 0u);
}

TEST_F(AliasRecords, TellNamesUpToTheVolume) {
    Alias alias;
    MakeAlias(mFile, alias);
    EXPECT_EQ(TextIn(alias, asiAliasName), "file");
    EXPECT_EQ(TextIn(alias, asiParentName), "folder");
    EXPECT_EQ(TextIn(alias, 2), "Disk");
    EXPECT_EQ(TextIn(alias, 3), "");
    EXPECT_EQ(TextIn(alias, asiVolumeName), "Disk");
    EXPECT_EQ(TextIn(alias, asiServerName), "");
    EXPECT_EQ(TextIn(alias, asiZoneName), "");
    EXPECT_EQ(TextIn(alias, -4), "error -50");
}

TEST_F(AliasRecords, KeepUserTypeAndAppendedBytesWhenUpdated) {
    Alias alias;
    MakeAlias(mFile, alias);
    SetAliasUserType(alias, 'mine');
    alias.Set(alias.Bytes() + "appended");
    const FSSpec target = SpecOf(Write("disk/other/a much longer name than before"));
    Boolean wasChanged = false;
    ASSERT_EQ(UpdateAlias(nullptr, &target, alias, &wasChanged), noErr);
    EXPECT_TRUE(wasChanged);
    EXPECT_EQ(GetAliasUserType(alias), UInt32('mine'));
    EXPECT_TRUE(alias.Bytes().ends_with("appended"));
    EXPECT_EQ(GetAliasSize(alias), Size(alias.Bytes().size() - 8));
    EXPECT_EQ(Resolved(alias), PathOf(target));
    ASSERT_EQ(UpdateAlias(nullptr, &target, alias, &wasChanged), noErr);
    EXPECT_FALSE(wasChanged);
}

TEST_F(AliasRecords, StayAsTheyAreWhenAnUpdateFails) {
    Alias alias;
    MakeAlias(mFile, alias);
    const auto before = alias.Bytes();
    FSSpec target = SpecOf(mFile);
    std::filesystem::remove(mFile);
    Boolean wasChanged = true;
    EXPECT_EQ(UpdateAlias(nullptr, &target, alias, &wasChanged), fnfErr);
    EXPECT_FALSE(wasChanged);
    EXPECT_EQ(alias.Bytes(), before);
}

TEST_F(AliasRecords, MinimalOnesAreShortAndNeverUpdated) {
    const FSSpec spec = SpecOf(mFile);
    Alias whole, minimal;
    MakeAlias(mFile, whole);
    ASSERT_EQ(NewAliasMinimal(&spec, minimal.Out()), noErr);
    EXPECT_LT(GetAliasSize(minimal), GetAliasSize(whole));
    EXPECT_EQ(Resolved(minimal), mFile);
    const auto before = minimal.Bytes();
    Move("disk/folder/file", "disk/folder/renamed");
    EXPECT_EQ(Resolved(minimal), "error -43");
    EXPECT_EQ(minimal.Bytes(), before);
}

TEST_F(AliasRecords, MinimalOnesAreMadeOfPathsThatNeedNotExist) {
    const auto make = [](const std::string& inPath, Alias& outAlias) {
        return NewAliasMinimalFromFullPath(
            SInt16(inPath.size()), inPath.data(), reinterpret_cast<const UInt8*>("\4Zone"),
            reinterpret_cast<const UInt8*>("\6Server"), outAlias.Out());
    };
    Alias there, missing, nowhere, bad;
    ASSERT_EQ(make("Disk:folder:file", there), noErr);
    EXPECT_EQ(Resolved(there), mFile);
    EXPECT_EQ(TextIn(there, asiZoneName), "Zone");
    EXPECT_EQ(TextIn(there, asiServerName), "Server");
    ASSERT_EQ(make("Disk:folder:missing", missing), noErr);
    EXPECT_EQ(Resolved(missing), "error -43");
    ASSERT_EQ(make("No such disk:file", nowhere), noErr);
    EXPECT_EQ(Resolved(nowhere), "error -35");
    EXPECT_EQ(make("no path", bad), bdNamErr);
    EXPECT_EQ(make(":partial", bad), bdNamErr);
    EXPECT_EQ(make("Disk:" + std::string(64, 'x'), bad), bdNamErr);
    EXPECT_EQ(AliasHandle(bad), nullptr);
}

TEST_F(AliasRecords, CutOffAnywhereAreRefused) {
    Alias alias;
    MakeAlias(mFile, alias);
    const auto whole = alias.Bytes();
    for (size_t size = 0; size < whole.size(); ++size) {
        Alias cut;
        cut.Set(whole.substr(0, size));
        ASSERT_EQ(Resolved(cut), "error -50") << size;
        ASSERT_EQ(TextIn(cut, asiAliasName), "error -50");
    }
}

TEST_F(AliasRecords, TooSmallForAHeadHaveNone) {
    Alias alias;
    alias.Set("abc");
    EXPECT_EQ(GetAliasSize(alias), 0);
    EXPECT_EQ(GetAliasUserType(alias), 0u);
    SetAliasUserType(alias, 'user');
    EXPECT_EQ(alias.Bytes(), "abc");
}

TEST_F(AliasRecords, WithOneByteChangedNeverDoHarm) {
    Alias alias;
    MakeAlias(mFile, alias);
    const auto whole = alias.Bytes();
    for (size_t i = 0; i < whole.size(); ++i) {
        auto bytes = whole;
        bytes[i] = char(bytes[i] ^ 0xFF);
        Alias changed;
        changed.Set(bytes);
        const auto result = Resolved(changed);
        ASSERT_TRUE(result.starts_with("error ") || result.starts_with(Path("disk"))) << result;
    }
}

TEST_F(AliasRecords, DoNotLeadOffTheirVolume) {
    Write("secret");
    Alias alias;
    MakeAlias(mFile, alias);
    auto bytes = alias.Bytes();
    const auto at = bytes.rfind("folder/file");
    ASSERT_NE(at, std::string::npos);
    bytes.replace(at, 11, "../././sec/");
    alias.Set(bytes);
    std::filesystem::remove(mFile);
    EXPECT_EQ(Resolved(alias).substr(0, 5), "error");
}

TEST_F(AliasRecords, WorkAsReferences) {
    FSRef ref, found;
    ASSERT_EQ(RefOf(mFile, &ref), noErr);
    Alias whole, minimal;
    ASSERT_EQ(FSNewAlias(nullptr, &ref, whole.Out()), noErr);
    ASSERT_EQ(FSNewAliasMinimal(&ref, minimal.Out()), noErr);
    Boolean wasChanged;
    for (const Alias* alias : {&whole, &minimal}) {
        ASSERT_EQ(FSResolveAlias(nullptr, *alias, &found, &wasChanged), noErr);
        EXPECT_EQ(FSCompareFSRefs(&ref, &found), noErr);
    }
    FSRef folder;
    ASSERT_EQ(RefOf(Path("disk/folder"), &folder), noErr);
    ASSERT_EQ(FSUpdateAlias(nullptr, &folder, whole, &wasChanged), noErr);
    EXPECT_TRUE(wasChanged);
    EXPECT_EQ(Resolved(whole), Path("disk/folder"));
    std::filesystem::remove(mFile);
    EXPECT_EQ(FSResolveAlias(nullptr, minimal, &found, &wasChanged), fnfErr);
}

}  // namespace
