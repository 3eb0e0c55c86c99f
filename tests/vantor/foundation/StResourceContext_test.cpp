// The guards of the load flag and of the current resource file.
#include "vantor/foundation/StResourceContext.h"

#include <algorithm>
#include <type_traits>

#include "platform/resource_manager/ResourceFixture.h"

namespace {

static_assert(std::has_virtual_destructor_v<StResourceContext>);
static_assert(sizeof(StResLoad) == 1 && sizeof(StCurResFile) == 2);

// The fields in their order, as a derived class of another library sees them.
struct ContextFields : StResourceContext {
    static_assert(sizeof(mIsValid) == 4 && sizeof(mInContext) == 4 && sizeof(mSavedMode) == 4);
    static_assert(sizeof(mSavedRefNum) == 2 && sizeof(mContextRefNum) == 2);
    using StResourceContext::StResourceContext;
    std::vector<const void*> Places() const {
        return {&mIsValid, &mInContext, &mSavedMode, &mSavedRefNum, &mContextRefNum, &mEnclosing};
    }
};

class ContextTest : public ResourceFixture {
  protected:
    void SetUp() override {
        ResourceFixture::SetUp();
        mFirst = OpenNew("first");
        mSecond = OpenNew("second");
        UseResFile(mFirst);
    }
    void TearDown() override {
        StResourceContext::sCurrentContext = nullptr;
        ResourceFixture::TearDown();
    }

    ResFileRefNum mFirst = 0, mSecond = 0;
};

using StResLoadTest = ContextTest;
using StCurResFileTest = ContextTest;
using StResourceContextTest = ContextTest;

TEST_F(StResLoadTest, PutsTheFlagBackWhateverItWas) {
    for (const bool before : {true, false}) {
        SetResLoad(before);
        {
            const StResLoad off(false);
            EXPECT_FALSE(LMGetResLoad());
            const StResLoad on(true);
            EXPECT_TRUE(LMGetResLoad());
        }
        EXPECT_EQ(LMGetResLoad(), before);
    }
}

TEST_F(StCurResFileTest, MakesAFileCurrentForAScope) {
    {
        const StCurResFile guard(mSecond);
        EXPECT_EQ(CurResFile(), mSecond);
    }
    EXPECT_EQ(CurResFile(), mFirst);
}

TEST_F(StCurResFileTest, MinusOneChangesNothingAndStillRestores) {
    {
        const StCurResFile guard(-1);
        EXPECT_EQ(CurResFile(), mFirst);
        UseResFile(mSecond);
    }
    EXPECT_EQ(CurResFile(), mFirst);
}

TEST_F(StResourceContextTest, FieldsStandInTheirOrder) {
    const ContextFields fields(-1);
    const auto places = fields.Places();
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end()));
}

TEST_F(StResourceContextTest, RemembersTheFileThatWasCurrentWhenTheLibraryWasLoaded) {
    EXPECT_EQ(StResourceContext::sAppContext, kSystemResFile);
}

TEST_F(StResourceContextTest, EntersAndLeaves) {
    {
        StResourceContext context(mSecond);
        EXPECT_TRUE(context.IsValid());
        EXPECT_TRUE(context.InContext());
        EXPECT_EQ(CurResFile(), mSecond);
        EXPECT_EQ(StResourceContext::sCurrentContext, &context);
        EXPECT_EQ(StResourceContext::GetCurrentRefNum(), mSecond);
        EXPECT_TRUE(StResourceContext::CurrentContextIsValid());
        context.Exit();
        EXPECT_FALSE(context.InContext());
        EXPECT_EQ(CurResFile(), mFirst);
        UseResFile(mSecond);
        context.Exit();  // which is out already
        EXPECT_EQ(CurResFile(), mSecond);
        UseResFile(mFirst);
    }
    EXPECT_EQ(CurResFile(), mFirst);
}

TEST_F(StResourceContextTest, ContextsNest) {
    StResourceContext outer(mSecond);
    {
        const StResourceContext inner(mFirst);
        EXPECT_EQ(CurResFile(), mFirst);
        EXPECT_EQ(StResourceContext::sCurrentContext, &inner);
    }
    EXPECT_EQ(CurResFile(), mSecond);
    EXPECT_EQ(StResourceContext::sCurrentContext, &outer);
}

TEST_F(StResourceContextTest, KeepsPointingAtTheOutermostContextThatWasLeft) {
    StResourceContext context(mSecond);
    context.Exit();
    EXPECT_EQ(StResourceContext::sCurrentContext, &context);
    EXPECT_EQ(StResourceContext::GetCurrentRefNum(), mSecond);
}

TEST_F(StResourceContextTest, OneForMinusOneIsNotValidAndChangesNoFile) {
    {
        const StResourceContext context(-1);
        EXPECT_FALSE(context.IsValid());
        EXPECT_TRUE(context.InContext());
        EXPECT_FALSE(StResourceContext::CurrentContextIsValid());
        EXPECT_EQ(StResourceContext::GetCurrentRefNum(), -1);
        EXPECT_EQ(CurResFile(), mFirst);
        UseResFile(mSecond);
    }
    EXPECT_EQ(CurResFile(), mSecond);
}

TEST_F(StResourceContextTest, SavingMakesItAGuardOfTheFileThatIsCurrentThen) {
    {
        StResourceContext context(-1);
        UseResFile(mSecond);
        context.Save();
        EXPECT_FALSE(context.IsValid());
        EXPECT_FALSE(context.InContext());
        UseResFile(mFirst);
        context.Exit();
        EXPECT_EQ(CurResFile(), mSecond);
        UseResFile(mFirst);
    }
    EXPECT_EQ(CurResFile(), mSecond);
}

TEST_F(StResourceContextTest, SavingLeavesTheContextFirst) {
    StResourceContext context(mSecond);
    context.Save();
    EXPECT_EQ(CurResFile(), mFirst);
    EXPECT_EQ(StResourceContext::GetCurrentRefNum(), -1);
}

TEST_F(StResourceContextTest, WithoutAContextThereIsNoFile) {
    EXPECT_EQ(StResourceContext::GetCurrentRefNum(), 0);
    EXPECT_FALSE(StResourceContext::CurrentContextIsValid());
}

}  // namespace
