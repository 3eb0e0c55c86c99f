// Volumes: the numbers they keep, and folders mounted as volumes.
#include <Platform/Platform.h>

#include "FileFixture.h"

namespace {

class VolumesTest : public FileFixture {
  protected:
    FSVolumeRefNum Mount(const std::string& inFolder, const char* inName) {
        FSVolumeRefNum number = 0;
        EXPECT_EQ(PlatformMountFolder(MakeFolder(inFolder).c_str(), inName, &number), noErr);
        mMounted.push_back(number);
        return number;
    }
    void TearDown() override {
        for (const auto number : mMounted) PlatformUnmountFolder(number);
    }
    std::vector<FSVolumeRefNum> mMounted;
};

TEST_F(VolumesTest, BeginWithTheRootAsNumberMinus100) {
    EXPECT_EQ(+SpecOf("/").vRefNum, -100);
    EXPECT_EQ(Ask("spec /").substr(0, 8), "0 -100 1");
}

TEST_F(VolumesTest, HoldEveryPathEvenWhatIsNoFileSystemOfAUser) {
    for (const char* path : {"/proc/self/status", "/dev/null", "/sys"}) {
        FSRef ref;
        EXPECT_EQ(RefOf(path, &ref), noErr) << path;
    }
    EXPECT_EQ(PathOf(SpecOf("/dev/null")), "/dev/null");
}

TEST_F(VolumesTest, MountedFromFoldersAreVolumesForEveryProcess) {
    const auto number = Mount("Disk", "Tést Disk");
    const auto path = Write("Disk/File");
    const FSSpec spec = SpecOf(path);
    EXPECT_EQ(+spec.vRefNum, number);
    EXPECT_EQ(+spec.parID, fsRtDirID);
    EXPECT_EQ(Ask("spec " + path), "0 " + Described(spec));
    FSSpec byName;
    ASSERT_EQ(MakeSpec(0, 0, "T\x8est Disk:File", &byName), noErr);
    EXPECT_EQ(PathOf(byName), path);
    ASSERT_EQ(MakeSpec(number, fsRtDirID, "", &byName), noErr);
    EXPECT_EQ(+byName.parID, fsRtParID);
    EXPECT_EQ(NameOf(byName), "T\x8est Disk");
    EXPECT_EQ(HSetVol(reinterpret_cast<const UInt8*>("\x0AT\x8est Disk:"), 0, 0), noErr);
    FSVolumeRefNum current = 0;
    EXPECT_EQ(HGetVol(nullptr, &current, nullptr), noErr);
    EXPECT_EQ(current, number);
    EXPECT_EQ(HSetVol(nullptr, -100, 0), noErr);
}

TEST_F(VolumesTest, TakeSpecsWithThemWhenUnmountedAndBringThemBack) {
    MakeFolder("Disk/Inner");
    const auto path = Write("Disk/Inner/File");
    const FSSpec outside = SpecOf(path);
    const auto number = Mount("Disk", nullptr);
    const FSSpec inside = SpecOf(path);
    EXPECT_EQ(+inside.vRefNum, number);
    EXPECT_EQ(PathOf(outside), path);
    EXPECT_EQ(PlatformUnmountFolder(number), noErr);
    EXPECT_EQ(PathOf(inside), "error -35");
    EXPECT_EQ(Ask("path " + Described(inside)), "-35 ");
    EXPECT_EQ(+SpecOf(path).vRefNum, +outside.vRefNum);
    EXPECT_EQ(Mount("Disk", nullptr), number);
    EXPECT_EQ(PathOf(inside), path);
}

TEST_F(VolumesTest, NeverShareANameOrAFolder) {
    const auto first = Mount("One", "Same");
    const auto second = Mount("Two", "Same");
    FSSpec spec;
    ASSERT_EQ(FSMakeFSSpec(second, 0, nullptr, &spec), noErr);
    EXPECT_EQ(NameOf(spec), "Same 2");
    ASSERT_EQ(FSMakeFSSpec(first, 0, nullptr, &spec), noErr);
    EXPECT_EQ(NameOf(spec), "Same");
    FSVolumeRefNum number = 0;
    EXPECT_EQ(PlatformMountFolder(Path("One").c_str(), "Other", &number), volOnLinErr);
    EXPECT_EQ(PlatformMountFolder("/", "Other", &number), volOnLinErr);
    EXPECT_EQ(PlatformMountFolder(Write("File").c_str(), "Other", &number), dirNFErr);
    EXPECT_EQ(PlatformMountFolder(Path("Missing").c_str(), "Other", &number), fnfErr);
    EXPECT_EQ(PlatformUnmountFolder(-100), fBsyErr);
    EXPECT_EQ(PlatformUnmountFolder(-32768), nsvErr);
}

TEST_F(VolumesTest, NestAndStillAgreeOnTheInnermost) {
    const auto outer = Mount("Outer", "Outer");
    const auto inner = Mount("Outer/In/Inner", "Inner");
    EXPECT_EQ(+SpecOf(Write("Outer/In/File")).vRefNum, outer);
    EXPECT_EQ(+SpecOf(Write("Outer/In/Inner/File")).vRefNum, inner);
    EXPECT_EQ(+SpecOf(Path("Outer/In/Inner")).parID, fsRtParID);
    FSSpec spec;
    ASSERT_EQ(MakeSpec(outer, NumberOf(Path("Outer/In")), "Inner", &spec), noErr);
    EXPECT_EQ(+spec.vRefNum, inner);
    EXPECT_EQ(PathOf(SpecOf(Path("Outer/In/Inner/File"))), Path("Outer/In/Inner/File"));
}

}  // namespace
