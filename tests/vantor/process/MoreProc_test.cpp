// Processes with result codes, among real ones.
#include "vantor/process/MoreProc.h"

#include <gtest/gtest.h>

#include "support/Applications.h"
#include "support/DebuggerTexts.h"
#include "support/RealCall.h"

namespace {

bool sNoFront = false;  // nothing is in front

}  // namespace

OSErr GetFrontProcess(ProcessSerialNumber* outPSN) {
    return sNoFront ? OSErr{procNotFound} : REAL_CALL(GetFrontProcess)(outPSN);
}

namespace {

using MoreProc = ApplicationsTest;

TEST_F(MoreProc, FindsByCreatorAndBySignature) {
    const ProcessSerialNumber psn = InstallAndLaunch("One", "OneA");
    ProcessSerialNumber found;
    EXPECT_EQ(MoreProcFindProcessByCreator('OneA', &found), noErr);
    EXPECT_EQ(found, psn);
    EXPECT_EQ(MoreProcFindProcessBySignature('OneA', 'APPL', &found), noErr);
    EXPECT_EQ(found, psn);
    EXPECT_EQ(MoreProcFindProcessBySignature('OneA', 'appe', &found), procNotFound);
    EXPECT_EQ(MoreProcFindProcessByCreator('none', &found), procNotFound);
}

TEST_F(MoreProc, RefusesNullPlacesAndShowsThem) {
    const DebuggerTexts shown;
    EXPECT_EQ(MoreProcFindProcessByCreator('OneA', nullptr), paramErr);
    EXPECT_EQ(MoreProcFindProcessBySignature('OneA', 'APPL', nullptr), paramErr);
    EXPECT_EQ(MoreProcGetProcessInformation(nullptr, nullptr), paramErr);
    EXPECT_EQ(shown.Texts(), (DebuggerTexts::List{"MoreAssertQ failure: pPSN != nil",
                                                  "MoreAssertQ failure: pPSN != nil",
                                                  "MoreAssertQ failure: pInfo != nil"}));
    EXPECT_EQ(MoreProcGetProcessAppFile(nullptr, nullptr), paramErr);
    EXPECT_EQ(shown.Texts().size(), 3u) << "refused without a word";
}

TEST_F(MoreProc, ShowsANullNameAndGoesOn) {
    const DebuggerTexts shown;
    EXPECT_EQ(MoreProcGetProcessName(nullptr, nullptr), noErr);
    EXPECT_EQ(shown.Texts(), DebuggerTexts::List{"MoreAssertQ failure: pProcessName != nil"});
}

TEST_F(MoreProc, ReadsNameSignatureAndFile) {
    const ProcessSerialNumber psn = InstallAndLaunch("One", "OneA");
    Str255 name = "";
    EXPECT_EQ(MoreProcGetProcessName(&psn, name), noErr);
    EXPECT_GT(name[0], 0);
    OSType type = 0, creator = 0;
    EXPECT_EQ(MoreProcGetProcessTypeSignature(&psn, &type, &creator), noErr);
    EXPECT_EQ(type, OSType{'APPL'});
    EXPECT_EQ(creator, OSType{'OneA'});
    FSSpec file = {};
    EXPECT_EQ(MoreProcGetProcessAppFile(&psn, &file), noErr);
    EXPECT_EQ(TextOf(file.name), "recorder");
}

TEST_F(MoreProc, InformationLeavesNameAndFileOut) {
    Str255 name;
    ProcessInfoRec info = {};
    info.processName = name;
    EXPECT_EQ(MoreProcGetProcessInformation(nullptr, &info), noErr);
    EXPECT_EQ(+info.processName, nullptr);
    EXPECT_EQ(+info.processAppSpec, nullptr);
    EXPECT_EQ(+info.processInfoLength, 60u);
}

TEST_F(MoreProc, ANullNumberIsTheOwnProcess) {
    FSSpec own = {}, current = {};
    EXPECT_EQ(MoreProcGetProcessAppFile(nullptr, &own), noErr);
    EXPECT_EQ(MoreProcGetCurrentProcessFSSpec(&current), noErr);
    EXPECT_EQ(std::memcmp(&own, &current, sizeof own), 0);
    EXPECT_EQ(TextOf(own.name), "test_process");
}

TEST_F(MoreProc, WritesNothingAboutAProcessThatIsGone) {
    const ProcessSerialNumber gone = {0, 0x7FFFFFFF};
    OSType type = 1, creator = 2;
    Boolean background = 7;
    EXPECT_NE(MoreProcGetProcessTypeSignature(&gone, &type, &creator), noErr);
    EXPECT_NE(MoreProcIsProcessBackgroundOnly(&gone, &background), noErr);
    EXPECT_EQ(type, 1u);
    EXPECT_EQ(creator, 2u);
    EXPECT_EQ(background, 7);
}

TEST_F(MoreProc, KnowsWhoOnlyWorksInTheBackground) {
    const ProcessSerialNumber plain = InstallAndLaunch("One", "OneA");
    const ProcessSerialNumber hidden = Launch(Install("Two", "TwoA", "APPL", true));
    Boolean background = 7;
    EXPECT_EQ(MoreProcIsProcessBackgroundOnly(&plain, &background), noErr);
    EXPECT_EQ(background, 0);
    EXPECT_EQ(MoreProcIsProcessBackgroundOnly(&hidden, &background), noErr);
    EXPECT_EQ(background, 1);
}

TEST_F(MoreProc, KnowsWhoIsInFront) {
    const ProcessSerialNumber psn = InstallAndLaunch("One", "OneA");
    UProcess::SetFront(psn);
    EXPECT_TRUE(MoreProcIsProcessAtFront(&psn));
    EXPECT_FALSE(MoreProcIsProcessAtFront(nullptr));
    UProcess::MakeMeFront();
    EXPECT_FALSE(MoreProcIsProcessAtFront(&psn));
    EXPECT_TRUE(MoreProcIsProcessAtFront(nullptr));
}

TEST_F(MoreProc, NobodyIsInFrontWhenThatCannotBeToldAndThatIsShown) {
    const DebuggerTexts shown;
    sNoFront = true;
    EXPECT_FALSE(MoreProcIsProcessAtFront(nullptr));
    sNoFront = false;
    EXPECT_EQ(shown.Texts(), DebuggerTexts::List{"MoreAssertQ failure: err == noErr"});
}

}  // namespace
