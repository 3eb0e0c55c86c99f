// Processes with exceptions, among real ones: lookup, fronting, launching, quitting.
#include "vantor/process/UProcess.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "support/Applications.h"
#include "support/PascalString.h"
#include "support/RealCall.h"
#include "support/RecorderTest.h"
#include "support/Thrown.h"
#include "vantor/foundation/BigEndian.h"

namespace {

ProcessSerialNumber sHidden = {0, 0};  // its information cannot be read
LaunchParamBlockRec sLaunched = {};
FSSpec sLaunchedSpec = {};
OSErr sListError = noErr;                   // the list of processes cannot be walked
std::vector<ProcessSerialNumber> sAsked;    // whom events went to
ProcessSerialNumber sUnreachable = {0, 0};  // events to it fail

}  // namespace

OSErr GetNextProcess(ProcessSerialNumber* ioPSN) {
    return sListError != noErr ? sListError : REAL_CALL(GetNextProcess)(ioPSN);
}

OSErr AESend(const AppleEvent* inEvent, AppleEvent* outReply, AESendMode inMode,
             AESendPriority inPriority, SInt32 inTimeOut, AEIdleUPP inIdle, AEFilterUPP inFilter) {
    ProcessSerialNumber psn = {0, 0};
    EXPECT_EQ(AEGetAttributePtr(inEvent, keyAddressAttr, typeProcessSerialNumber, nullptr, &psn,
                                sizeof psn, nullptr),
              noErr);
    psn = NativeFromBigEndian(psn);
    sAsked.push_back(psn);
    if (sUnreachable.lowLongOfPSN != 0 && psn.lowLongOfPSN == sUnreachable.lowLongOfPSN)
        return ioErr;
    return REAL_CALL(AESend)(inEvent, outReply, inMode, inPriority, inTimeOut, inIdle, inFilter);
}

OSErr GetProcessInformation(const ProcessSerialNumber* inPSN, ProcessInfoRec* outInfo) {
    if (inPSN->lowLongOfPSN == sHidden.lowLongOfPSN && sHidden.lowLongOfPSN != 0) return ioErr;
    return REAL_CALL(GetProcessInformation)(inPSN, outInfo);
}

OSErr LaunchApplication(LaunchPBPtr ioBlock) {
    sLaunched = *ioBlock;
    sLaunchedSpec = *ioBlock->launchAppSpec;
    return REAL_CALL(LaunchApplication)(ioBlock);
}

namespace {

using Process = ApplicationsTest;

TEST_F(Process, ThatDoesNotRunIsProcNotFound) {
    EXPECT_EQ(CodeThrownBy([] { UProcess::GetPSN('none', 'APPL'); }), procNotFound);
    EXPECT_FALSE(UProcess::IsRunning('none', 'APPL'));
    EXPECT_FALSE(UProcess::IsRunning(PString("nobody"), 'APPL', false, false));
}

TEST_F(Process, IsFoundByCreatorAndTypeBoth) {
    const ProcessSerialNumber psn = InstallAndLaunch("One", "OneA");
    EXPECT_EQ(UProcess::GetPSN('OneA', 'APPL'), psn);
    EXPECT_TRUE(UProcess::IsRunning('OneA', 'APPL'));
    EXPECT_FALSE(UProcess::IsRunning('OneA', 'appe'));
}

TEST_F(Process, LaunchedFirstIsFoundFirst) {
    const ProcessSerialNumber first = InstallAndLaunch("First", "Twin");
    const ProcessSerialNumber second = InstallAndLaunch("Second", "Twin");
    EXPECT_NE(first, second);
    EXPECT_EQ(UProcess::GetPSN('Twin', 'APPL'), first);
}

TEST_F(Process, IsSteppedBackToInTheOrderOfLaunching) {
    const ProcessSerialNumber first = InstallAndLaunch("First", "Twin");
    const ProcessSerialNumber second = InstallAndLaunch("Second", "Twin");
    ProcessSerialNumber psn = second;
    EXPECT_FALSE(UProcess::GetPreviousPSN(psn));
    EXPECT_EQ(psn, first);
    ProcessSerialNumber before = psn;
    while (!UProcess::GetPreviousPSN(psn)) before = psn;
    EXPECT_EQ(psn, before);  // the first process of all stays
    ProcessSerialNumber next = {0, kNoProcess};
    EXPECT_FALSE(UProcess::GetNextPSN(next));
    EXPECT_EQ(psn, next);
}

TEST_F(Process, ThatIsNotInTheListHasNoneBeforeIt) {
    ProcessSerialNumber psn = {0, 0x7FFFFFFF};
    EXPECT_EQ(CodeThrownBy([&] { UProcess::GetPreviousPSN(psn); }), procNotFound);
    psn = UProcess::GetCurrentPSN();  // another name of one that is
    EXPECT_EQ(CodeThrownBy([&] { UProcess::GetPreviousPSN(psn); }), procNotFound);
}

TEST_F(Process, ThatCannotBeReadIsPassedOver) {
    const ProcessSerialNumber first = InstallAndLaunch("First", "Twin");
    const ProcessSerialNumber second = InstallAndLaunch("Second", "Twin");
    sHidden = first;
    EXPECT_EQ(UProcess::GetPSN('Twin', 'APPL'), second);
    sHidden = second;
    EXPECT_EQ(UProcess::GetPSN('Twin', 'APPL'), first);
    sHidden = {0, 0};
}

TEST_F(Process, IsFoundByNameWithAndWithoutCase) {
    const ProcessSerialNumber psn = InstallAndLaunch("One", "OneA");
    SProcessInfo info;
    UProcess::GetInfo(psn, info);
    std::string name = TextOf(info.mName);
    ASSERT_FALSE(name.empty());
    EXPECT_EQ(UProcess::GetPSN(PString(name), 'APPL', true, true), psn);
    EXPECT_FALSE(UProcess::IsRunning(PString(name), 'appe', true, true));
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) {
        return static_cast<char>(std::isupper(c) ? std::tolower(c) : std::toupper(c));
    });
    EXPECT_TRUE(UProcess::IsRunning(PString(name), 'APPL', false, true));
    EXPECT_FALSE(UProcess::IsRunning(PString(name), 'APPL', true, true));
}

TEST_F(Process, InformationBringsNumbersNameAndFile) {
    const ProcessSerialNumber psn = InstallAndLaunch("One", "OneA");
    SProcessInfo info;
    EXPECT_EQ(info.processInfoLength, 60u);
    UProcess::GetInfo(psn, info);
    EXPECT_EQ(info.processSignature, OSType{'OneA'});
    EXPECT_EQ(info.processType, OSType{'APPL'});
    EXPECT_EQ(ProcessSerialNumber(info.processNumber), psn);
    EXPECT_GT(info.mAppSpec.name[0], 0);
    EXPECT_EQ(ProcessSerialNumber(info.processLauncher), UProcess::GetMyPSN());
}

TEST_F(Process, OwnNumberIsRealAndTheSameAsTheCurrentOne) {
    const ProcessSerialNumber mine = UProcess::GetMyPSN(), current = UProcess::GetCurrentPSN();
    EXPECT_EQ(+current.highLongOfPSN, 0u);
    EXPECT_EQ(+current.lowLongOfPSN, 2u);
    EXPECT_GT(+mine.lowLongOfPSN, 2u);
    EXPECT_TRUE(UProcess::IsSame(mine, current));
    EXPECT_FALSE(UProcess::IsSame(mine, {0, 0}));
    EXPECT_TRUE(mine == current);
    EXPECT_TRUE((mine != ProcessSerialNumber{0, 0}));
}

TEST_F(Process, StepsThroughTheListInLaunchOrderToItsEnd) {
    const ProcessSerialNumber one = InstallAndLaunch("One", "OneA");
    const ProcessSerialNumber two = InstallAndLaunch("Two", "TwoA");
    std::vector<UInt32> listed;
    ProcessSerialNumber psn = {0, kNoProcess};
    while (!UProcess::GetNextPSN(psn)) listed.push_back(psn.lowLongOfPSN);
    EXPECT_EQ(+psn.lowLongOfPSN, UInt32{kNoProcess});
    EXPECT_THAT(listed, testing::ElementsAre(UProcess::GetMyPSN().lowLongOfPSN, one.lowLongOfPSN,
                                             two.lowLongOfPSN));
}

TEST_F(Process, SteppingFromANumberNeverGivenOutThrows) {
    ProcessSerialNumber psn = {0, 0x7FFFFFFF};
    EXPECT_EQ(CodeThrownBy([&] { UProcess::GetNextPSN(psn); }), paramErr);
}

TEST_F(Process, ComesToTheFrontAndGivesWay) {
    const ProcessSerialNumber psn = InstallAndLaunch("One", "OneA");
    UProcess::SetFront(psn);
    EXPECT_EQ(UProcess::GetFront(), psn);
    UProcess::MakeMeFront();
    EXPECT_EQ(UProcess::GetFront(), UProcess::GetMyPSN());
}

TEST_F(Process, ThatHasEndedIsAnErrorForEachCall) {
    const ProcessSerialNumber psn = InstallAndLaunch("One", "OneA");
    ASSERT_EQ(KillProcess(&psn), noErr);
    ASSERT_TRUE(Eventually([&] { return HasEnded(psn); }));
    SProcessInfo info;
    EXPECT_EQ(CodeThrownBy([&] { UProcess::GetInfo(psn, info); }), procNotFound);
    EXPECT_EQ(CodeThrownBy([&] { UProcess::SetFront(psn); }), procNotFound);
    EXPECT_EQ(CodeThrownBy([&] { UProcess::Wake(psn); }), procNotFound);
    // Its socket is closed a moment after it left the list; until then an event goes nowhere.
    EXPECT_TRUE(Eventually(
        [&] { return CodeThrownBy([&] { UProcess::Kill(psn); }) == SInt32{procNotFound}; }));
}

TEST_F(Process, CanBeWoken) {
    const ProcessSerialNumber psn = InstallAndLaunch("One", "OneA");
    EXPECT_EQ(CodeThrownBy([&] { UProcess::Wake(psn); }), std::nullopt);
}

TEST_F(Process, IsAskedToQuitAndNothingWaits) {
    RecorderBundle& bundle = Install("One", "OneA");
    const ProcessSerialNumber psn = Launch(bundle);
    UProcess::Kill(psn);
    EXPECT_TRUE(Eventually([&] { return HasEnded(psn); }));
    EXPECT_EQ(bundle.Events(), std::vector<std::string>{"aevt/quit tran=0 reply=0"});
}

TEST_F(Process, AllOthersAreAskedToQuitButTheFinderOnlyWhenWanted) {
    const ProcessSerialNumber one = InstallAndLaunch("One", "OneA");
    const ProcessSerialNumber finder = InstallAndLaunch("Finder", "MACS", "FNDR");
    const ProcessSerialNumber two = InstallAndLaunch("Two", "TwoA");
    UProcess::KillAllButMe(false);
    EXPECT_TRUE(Eventually([&] { return HasEnded(one) && HasEnded(two); }));
    EXPECT_FALSE(HasEnded(finder));
    UProcess::KillAllButMe(true);
    EXPECT_TRUE(Eventually([&] { return HasEnded(finder); }));
}

TEST_F(Process, OfTheFinderIsAskedToQuitLast) {
    const ProcessSerialNumber one = InstallAndLaunch("One", "OneA");
    const ProcessSerialNumber finder = InstallAndLaunch("Finder", "MACS", "FNDR");
    const ProcessSerialNumber two = InstallAndLaunch("Two", "TwoA");
    sAsked.clear();
    UProcess::KillAllButMe(true);
    EXPECT_THAT(sAsked, testing::ElementsAre(one, two, finder));
    EXPECT_TRUE(Eventually([&] { return HasEnded(finder); }));
}

TEST_F(Process, ThatCannotBeAskedToQuitEndsTheSweep) {
    const ProcessSerialNumber one = InstallAndLaunch("One", "OneA");
    const ProcessSerialNumber two = InstallAndLaunch("Two", "TwoA");
    sAsked.clear();
    sUnreachable = one;
    EXPECT_EQ(CodeThrownBy([] { UProcess::KillAllButMe(false); }), ioErr);
    sUnreachable = {0, 0};
    EXPECT_THAT(sAsked, testing::ElementsAre(one));
    EXPECT_FALSE(HasEnded(two));
}

TEST_F(Process, CannotBeSaidToRunOrNotWhenTheListCannotBeRead) {
    sListError = ioErr;
    EXPECT_EQ(CodeThrownBy([] { UProcess::IsRunning('OneA', 'APPL'); }), ioErr);
    EXPECT_EQ(CodeThrownBy([] { UProcess::IsRunning(PString("One"), 'APPL', true, true); }), ioErr);
    sListError = noErr;
}

TEST_F(Process, KeepsAskingAllToQuitWhenNoFinderIsFound) {
    const ProcessSerialNumber one = InstallAndLaunch("One", "OneA");
    UProcess::KillAllButMe(true);
    EXPECT_TRUE(Eventually([&] { return HasEnded(one); }));
}

TEST_F(Process, IsLaunchedWithAnExtendedBlockWithoutFileFlags) {
    const RecorderBundle& bundle = Install("One", "OneA");
    const FSSpec spec = bundle.Spec();
    Launch(bundle);
    EXPECT_EQ(+sLaunched.launchBlockID, 0x4C43);
    EXPECT_EQ(+sLaunched.launchEPBLength, 32u);
    EXPECT_EQ(+sLaunched.launchFileFlags, 0x0800);
    EXPECT_EQ(+sLaunched.launchControlFlags, launchContinue | launchDontSwitch | 0x0800);
    EXPECT_EQ(+sLaunched.launchAppParameters, nullptr);
    EXPECT_EQ(std::memcmp(&sLaunchedSpec, &spec, 70), 0);
}

TEST_F(Process, LaunchingAFileThatIsGoneThrows) {
    const RecorderBundle& bundle = Install("One", "OneA");
    const FSSpec spec = bundle.Spec();
    std::filesystem::remove_all(bundle.Path());
    EXPECT_EQ(CodeThrownBy([&] { UProcess::LaunchApp(spec, launchContinue); }), fnfErr);
}

}  // namespace
