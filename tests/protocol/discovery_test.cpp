// Finding and judging the recording application: versions, names, creators, and when it is gone.
#include <gtest/gtest.h>

#include "support/RecorderTest.h"
#include "support/Thrown.h"
#include "vantor/controller/CVantor.h"
#include "vantor/process/UProcess.h"

namespace {

class Discovery : public RecorderTest {
  protected:
    void Describe(const BundleFacts& inFacts) { mBundle->Describe(inFacts); }
    void DescribeVersion(const char* inVersion) {
        BundleFacts facts;
        facts.version = inVersion;
        Describe(facts);
    }
    void DescribeName(const char* inName) {
        BundleFacts facts;
        facts.name = inName;
        Describe(facts);
    }
    static std::string Path() {
        char path[1024] = "";
        const CFStringRef text = VantorGetMirelPath();
        EXPECT_TRUE(text != nullptr &&
                    CFStringGetCString(text, path, sizeof path, kCFStringEncodingUTF8));
        return path;
    }
};

TEST_F(Discovery, ThePathIsThatOfTheBundleExaminedLast) {
    EXPECT_TRUE(VantorIsMirelFound());
    EXPECT_EQ(Path(), mBundle->Path());
    EXPECT_FALSE(IsListed()) << "looking launches nothing";
}

TEST_F(Discovery, ThePathIsNullBeforeTheFirstExamination) {
    // Each of these runs in a process of its own under CTest; run together, one has looked before.
    if (CVantor::sMirelPath != nullptr) GTEST_SKIP() << "another test has looked";
    EXPECT_EQ(VantorGetMirelPath(), nullptr);
    EXPECT_FALSE(VantorIsMirelRunning());
    EXPECT_EQ(VantorGetMirelPath(), nullptr) << "nothing runs, so nothing was examined";
}

TEST_F(Discovery, AbsenceIsLaunchServicesOwnError) {
    std::filesystem::remove_all(mBundle->Path());
    EXPECT_FALSE(VantorIsMirelFound());
    EXPECT_FALSE(VantorIsMirelRunning());
    EXPECT_EQ(VantorInitiateSession(), kLSApplicationNotFoundErr);
    EXPECT_TRUE(VantorIsSessionInitiated());
    EXPECT_EQ(VantorGetStatusCode(nullptr), kLSApplicationNotFoundErr);
    EXPECT_EQ(VantorBringMirelToFront(), kLSApplicationNotFoundErr);
}

TEST_F(Discovery, Versions7OfAnyStagePass) {
    for (const char* version : {"7", "7.0", "7.0d1", "7.0a1", "7.0b3", "7.0f5", "12.4", "99.9.9"}) {
        DescribeVersion(version);
        EXPECT_TRUE(VantorIsMirelFound()) << version;
    }
}

TEST_F(Discovery, VersionsBelow7AndThoseWithoutANumberFail) {
    for (const char* version : {"6.9.9", "6.9.9f255", "1.0", "0", "", "7.10", "7.0.1.2", "new"}) {
        DescribeVersion(version);
        EXPECT_FALSE(VantorIsMirelFound()) << version;
        EXPECT_EQ(VantorInitiateSession(), kMirelInvalid) << version;
    }
    EXPECT_FALSE(IsListed());
}

TEST_F(Discovery, TheNameMustContainTheEditionInAnyCase) {
    for (const char* name : {"Calverin", "My CALVERIN 7", "xcalverinx"}) {
        DescribeName(name);
        EXPECT_TRUE(VantorIsMirelFound()) << name;
    }
    for (const char* name : {"Calverim", "Recorder", ""}) {
        DescribeName(name);
        EXPECT_FALSE(VantorIsMirelFound()) << name;
        EXPECT_EQ(VantorGetStatusCode(nullptr), kMirelInvalid) << name;
    }
}

TEST_F(Discovery, AnotherCreatorIsNotFoundAtAll) {
    BundleFacts facts;
    facts.creator = "Fv8j";
    Describe(facts);
    EXPECT_FALSE(VantorIsMirelFound());
    EXPECT_EQ(VantorGetStatusCode(nullptr), kLSApplicationNotFoundErr);
}

TEST_F(Discovery, AnotherPackageTypeIsInvalid) {
    BundleFacts facts;
    facts.type = "appe";
    Describe(facts);
    EXPECT_FALSE(VantorIsMirelFound());
    EXPECT_EQ(VantorGetStatusCode(nullptr), kMirelInvalid);
}

TEST_F(Discovery, ARunningRecorderThatIsTooOldFailsEveryRemoteCall) {
    StartRecorder();
    DescribeVersion("6.9.9");
    EXPECT_FALSE(VantorIsMirelRunning());
    EXPECT_FALSE(VantorIsMirelBusy());
    EXPECT_EQ(VantorGetStatusCode(nullptr), kMirelInvalid);
    EXPECT_EQ(VantorGetStatusText(nullptr), kMirelInvalid);
    EXPECT_EQ(VantorGetServerMode(nullptr), kMirelInvalid);
    EXPECT_EQ(VantorSetServerMode(true), kMirelInvalid);
    EXPECT_EQ(VantorGetSimulationMode(nullptr), kMirelInvalid);
    EXPECT_EQ(VantorSetSimulationMode(true), kMirelInvalid);
    EXPECT_EQ(VantorMakeNewDisc('Data'), kMirelInvalid);
    EXPECT_EQ(VantorAddFiles(nullptr, 0), kMirelInvalid);
    EXPECT_EQ(VantorWriteDisc(), kMirelInvalid);
    EXPECT_EQ(VantorWriteDiscWithOptions(0, -1, -1, false, false), kMirelInvalid);
    EXPECT_EQ(VantorBringMirelToFront(), kMirelInvalid);
    EXPECT_EQ(VantorGetDiscSize(nullptr), kMirelInvalid);
    EXPECT_EQ(VantorGetMediaInfo(nullptr), kMirelInvalid);
    EXPECT_EQ(VantorEjectDisc(), kMirelInvalid);
    SInt32 info = 7;
    EXPECT_EQ(VantorRequestBlankDisc(&info), kMirelInvalid);
    EXPECT_EQ(info, kMirelInvalid) << "an outcome, not a failure";
    EXPECT_EQ(VantorInitiateSession(), kMirelInvalid);
    EXPECT_TRUE(Events().empty());
    DescribeVersion("7.0");
}

TEST_F(Discovery, KeepsWritingTheSerialNumberOfARecorderThatIsTooOld) {
    StartRecorder();
    DescribeVersion("6.9.9");
    ProcessSerialNumber psn = {7, 7};
    EXPECT_FALSE(VantorGetMirelProcessSerialNumber(&psn));
    EXPECT_TRUE(UProcess::IsSame(psn, UProcess::GetPSN('Fv8k', 'APPL')));
}

TEST_F(Discovery, TheSerialNumberIsLeftAloneWhenNothingRuns) {
    ProcessSerialNumber psn = {7, 7};
    EXPECT_FALSE(VantorGetMirelProcessSerialNumber(&psn));
    EXPECT_EQ(psn.highLongOfPSN, 7u);
    EXPECT_EQ(psn.lowLongOfPSN, 7u);
    EXPECT_FALSE(VantorGetMirelProcessSerialNumber(nullptr));
}

TEST_F(Discovery, LaunchingTwiceGivesTheSameProcess) {
    const ProcessSerialNumber first = CVantor::LaunchMirel(true);
    const ProcessSerialNumber second = CVantor::LaunchMirel(false);
    EXPECT_TRUE(UProcess::IsSame(first, second));
    EXPECT_TRUE(UProcess::IsSame(first, CVantor::GetMirelPSN()));
    EXPECT_TRUE(CVantor::IsMirelValid(first));
}

TEST_F(Discovery, AStaleSerialNumberIsNoProcess) {
    const ProcessSerialNumber psn = CVantor::LaunchMirel(false);
    KillRecorder();
    EXPECT_EQ(CodeThrownBy([=] { CVantor::IsMirelValid(psn); }), procNotFound);
}

TEST_F(Discovery, KeepsAnsweringFalseForAFileThatIsGone) {
    FSSpec spec;
    CVantor::FindMirel(spec);
    EXPECT_TRUE(CVantor::IsMirelFileValid(spec));
    std::filesystem::remove_all(mBundle->Path());
    EXPECT_FALSE(CVantor::IsMirelFileValid(spec));
}

TEST_F(Discovery, TheNewestOfTwoIsTaken) {
    BundleFacts old;
    old.folder = "A.app";
    old.version = "6.9.9";
    const RecorderBundle other(old);
    EXPECT_TRUE(VantorIsMirelFound());
    EXPECT_EQ(Path(), mBundle->Path());
}

}  // namespace
