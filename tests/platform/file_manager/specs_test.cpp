// FSMakeFSSpec: which object a volume, a directory and a name or path lead to.
#include "FileFixture.h"

namespace {

class FSMakeFSSpecTest : public FileFixture {
  protected:
    void SetUp() override {
        FileFixture::SetUp();
        MakeFolder("Folder/Inner");
        Write("Folder/File");
        mParent = NumberOf(mFolder);
        mVolume = SpecOf(mFolder).vRefNum;
    }
    // The path that a request leads to, or the error in words.
    std::string Made(SInt32 inFolder, const std::string& inName) {
        FSSpec spec;
        const OSErr error = MakeSpec(mVolume, inFolder, inName, &spec);
        return error == noErr ? PathOf(spec) : "error " + std::to_string(error);
    }
    std::string VolumeName() {
        FSSpec root;
        EXPECT_EQ(MakeSpec(mVolume, 0, "", &root), noErr);
        return NameOf(root);
    }
    std::string FullPath(const std::string& inName) {
        std::string path = VolumeName();
        for (const auto& part : mFolder.relative_path()) path += ':' + part.string();
        return path + ':' + inName;
    }

    SInt32 mParent = 0;
    FSVolumeRefNum mVolume = 0;
};

TEST_F(FSMakeFSSpecTest, FindsANameOrAPartialPathBelowADirectory) {
    EXPECT_EQ(Made(mParent, "Folder"), Path("Folder"));
    EXPECT_EQ(Made(mParent, ":Folder:File"), Path("Folder/File"));
    EXPECT_EQ(Made(mParent, ":Folder:Inner:"), Path("Folder/Inner"));
    EXPECT_EQ(Made(mParent, "Folder:File"), "error -35");  // that would be a volume's name
}

TEST_F(FSMakeFSSpecTest, GoesUpForEachFurtherColon) {
    const SInt32 inner = NumberOf(Path("Folder/Inner"));
    EXPECT_EQ(Made(inner, "::"), Path("Folder"));
    EXPECT_EQ(Made(inner, ":::"), mFolder.string());
    EXPECT_EQ(Made(inner, "::File"), Path("Folder/File"));
    EXPECT_EQ(Made(inner, ":::Folder::Folder:File"), Path("Folder/File"));
    EXPECT_EQ(Made(fsRtDirID, "::"), "error -120");
}

TEST_F(FSMakeFSSpecTest, GivesTheDirectoryItselfForAnEmptyOrNullName) {
    FSSpec spec;
    ASSERT_EQ(FSMakeFSSpec(mVolume, mParent, nullptr, &spec), noErr);
    EXPECT_EQ(NameOf(spec), mFolder.filename());
    EXPECT_NE(+spec.parID, mParent);
    EXPECT_EQ(Made(mParent, ""), mFolder.string());
    EXPECT_EQ(Made(mParent, ":"), mFolder.string());
}

TEST_F(FSMakeFSSpecTest, TakesDirectoryZeroForTheRoot) {
    FSSpec spec;
    ASSERT_EQ(FSMakeFSSpec(mVolume, 0, nullptr, &spec), noErr);
    EXPECT_EQ(+spec.parID, fsRtParID);
    EXPECT_EQ(+spec.vRefNum, mVolume);
    EXPECT_EQ(Made(0, mFolder.relative_path().begin()->string()),
              "/" + mFolder.relative_path().begin()->string());
    FSSpec again;
    EXPECT_EQ(MakeSpec(mVolume, fsRtParID, NameOf(spec), &again), noErr);
    EXPECT_EQ(PathOf(again), "/");
}

TEST_F(FSMakeFSSpecTest, LetsAFullPathOverrideBothNumbers) {
    FSSpec spec;
    ASSERT_EQ(MakeSpec(-32768, 999999, FullPath("Folder:File"), &spec), noErr);
    EXPECT_EQ(PathOf(spec), Path("Folder/File"));
    EXPECT_EQ(+spec.vRefNum, mVolume);
    ASSERT_EQ(MakeSpec(0, 0, VolumeName() + ':', &spec), noErr);
    EXPECT_EQ(+spec.parID, fsRtParID);
}

TEST_F(FSMakeFSSpecTest, GivesAUsableSpecWithFnfErrWhenOnlyTheLastPartIsMissing) {
    FSSpec spec;
    ASSERT_EQ(MakeSpec(mVolume, mParent, ":Folder:New", &spec), fnfErr);
    EXPECT_EQ(+spec.vRefNum, mVolume);
    EXPECT_EQ(+spec.parID, NumberOf(Path("Folder")));
    EXPECT_EQ(NameOf(spec), "New");
    Write("Folder/New");
    EXPECT_EQ(PathOf(spec), Path("Folder/New"));
}

TEST_F(FSMakeFSSpecTest, ClearsTheSpecAfterOtherErrors) {
    const auto failure = [&](FSVolumeRefNum inVolume, SInt32 inFolder, const std::string& inName) {
        FSSpec spec;
        std::memset(&spec, 0x55, sizeof spec);
        const OSErr error = MakeSpec(inVolume, inFolder, inName, &spec);
        const FSSpec zero{};
        EXPECT_EQ(std::memcmp(&spec, &zero, sizeof spec), 0) << inName;
        return error;
    };
    EXPECT_EQ(failure(mVolume, mParent, ":Missing:File"), dirNFErr);
    EXPECT_EQ(failure(mVolume, mParent, ":Folder:File:Below"), dirNFErr);
    EXPECT_EQ(failure(mVolume, 0x3E000000, "File"), dirNFErr);
    EXPECT_EQ(failure(-32768, fsRtDirID, "File"), nsvErr);
    EXPECT_EQ(failure(0, 0, "No such volume:File"), nsvErr);
    EXPECT_EQ(failure(mVolume, mParent, std::string(64, 'a')), bdNamErr);
    EXPECT_EQ(failure(mVolume, mParent, ".."), bdNamErr);
    EXPECT_EQ(failure(mVolume, mParent, "."), bdNamErr);
    EXPECT_EQ(failure(mVolume, mParent, std::string("a\0b", 3)), bdNamErr);
}

TEST_F(FSMakeFSSpecTest, StartsInTheDefaultDirectoryWhenBothNumbersAreZero) {
    ASSERT_EQ(HSetVol(nullptr, mVolume, NumberOf(Path("Folder"))), noErr);
    FSSpec spec;
    EXPECT_EQ(MakeSpec(0, 0, "File", &spec), noErr);
    EXPECT_EQ(PathOf(spec), Path("Folder/File"));
    Str255 name;
    FSVolumeRefNum volume = 0;
    SInt32 folder = 0;
    ASSERT_EQ(HGetVol(name, &volume, &folder), noErr);
    EXPECT_EQ(volume, mVolume);
    EXPECT_EQ(folder, NumberOf(Path("Folder")));
    EXPECT_EQ(HSetVol(nullptr, mVolume, 0x3E000000), dirNFErr);
    EXPECT_EQ(HSetVol(nullptr, -32768, 0), nsvErr);
    ASSERT_EQ(HSetVol(nullptr, mVolume, 0), noErr);
}

TEST_F(FSMakeFSSpecTest, SeesASymbolicLinkAsAnObjectOfItsOwn) {
    std::filesystem::create_symlink("Folder/File", Path("Link"));
    std::filesystem::create_symlink("nowhere", Path("Dangling"));
    EXPECT_EQ(Made(mParent, "Link"), Path("Link"));
    EXPECT_EQ(Made(mParent, "Dangling"), Path("Dangling"));
    FSRef ref;
    ASSERT_EQ(RefOf(Path("Link"), &ref), noErr);
    EXPECT_EQ(PathOf(ref), Path("Folder/File"));
    EXPECT_EQ(RefOf(Path("Dangling"), &ref), fnfErr);
}

}  // namespace
