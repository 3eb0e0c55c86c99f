// FSMakeFSSpec and the specs of what is on disk.
#include "FileFixture.h"

namespace {

using FSMakeFSSpecTest = FileFixture;

TEST_F(FSMakeFSSpecTest, FindsAnExistingFileBelowItsFolder) {
    const auto path = Write("Report");
    FSSpec spec;
    const FSSpec made = SpecOf(path);
    ASSERT_EQ(MakeSpec(made.vRefNum, made.parID, "Report", &spec), noErr);
    EXPECT_EQ(PathOf(spec), path);
    EXPECT_EQ(NumberOf(mFolder), +spec.parID);
}

}  // namespace
