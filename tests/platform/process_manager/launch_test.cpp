// Launching real programs and bundles.
#include <Carbon/Carbon.h>
#include <Platform/Platform.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <thread>
#include <vector>

#include "file_manager/catalog/catalog.h"
#include "platform/apple_event_manager/Monitor.h"
#include "platform/launch_services/Bundle.h"
#include "platform/process_manager/Peer.h"
#include "process_manager/process_table.h"
#include "support/Command.h"
#include "support/Eventually.h"
#include "support/TemporaryHome.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr char kSleeper[] = "#!/bin/sh\nexec sleep 60\n";

TemporaryHome sHome;

FSSpec SpecOf(const fs::path& inPath) {
    FSSpec spec = {};
    EXPECT_EQ(carbon::SpecFromPath(inPath.string(), &spec), noErr) << inPath;
    return spec;
}

std::string ReadFile(const fs::path& inPath) {
    std::ifstream file(inPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Launch {
    explicit Launch(FSSpec inSpec, LaunchFlags inFlags = launchContinue,
                    AppParametersPtr inParameters = nullptr) {
        LaunchParamBlockRec block = {};
        block.launchBlockID = extendedBlock;
        block.launchEPBLength = extendedBlockLen;
        block.launchControlFlags = LaunchFlags(inFlags | launchNoFileFlags);
        block.launchAppSpec = &inSpec;
        block.launchAppParameters = inParameters;
        err = LaunchApplication(&block);
        psn = block.launchProcessSN;
    }
    OSErr err;
    ProcessSerialNumber psn;
};

class Launching : public testing::Test {
  protected:
    void SetUp() override {
        mFolder = sHome.Root() / "apps";
        fs::remove_all(mFolder);
        fs::create_directories(mFolder);
        setenv("LAUNCH_PEER_LOG", (mFolder / "log").c_str(), 1);
        ASSERT_EQ(GetCurrentProcess(&mOwn), noErr);
    }

    // Nothing that a test has launched outlives it.
    void TearDown() override {
        for (auto each = carbon::NextProcess({0, 0}); each; each = carbon::NextProcess(each->psn)) {
            if (Low(each->psn) == Low(mOwn)) continue;
            KillProcess(&each->psn);
            const ProcessSerialNumber psn = each->psn;
            EXPECT_TRUE(Eventually([&] { return !carbon::FindProcess(psn); }));
        }
    }

    FSSpec Bundle(const BundleText& inText, const std::string& inFileName = "Probe.app") {
        return SpecOf(MakeBundle(mFolder, inFileName, inText));
    }

    FSSpec SleepingBundle() {
        BundleText text;
        text.program = kSleeper;
        return Bundle(text);
    }

    FSSpec ListeningBundle() {
        BundleText text;
        text.program = ProgramFolder() + "/launch_peer";
        return Bundle(text);
    }

    std::string Log() const { return ReadFile(mFolder / "log"); }

    fs::path mFolder;
    ProcessSerialNumber mOwn = {};
};

pid_t PidOf(const ProcessSerialNumber& inPsn) {
    pid_t pid = -1;
    EXPECT_EQ(GetProcessPID(&inPsn, &pid), noErr);
    return pid;
}

bool IsFront(const ProcessSerialNumber& inPsn) {
    ProcessSerialNumber front = {};
    return GetFrontProcess(&front) == noErr && Low(front) == Low(inPsn);
}

TEST_F(Launching, NumberIsGoodAtOnceAndTellsTheBundlesFacts) {
    const Launch launch(SleepingBundle());
    ASSERT_EQ(launch.err, noErr);
    Str255 name;
    FSSpec spec;
    ProcessInfoRec info = {};
    info.processInfoLength = 60;
    info.processName = name;
    info.processAppSpec = &spec;
    ASSERT_EQ(GetProcessInformation(&launch.psn, &info), noErr);
    EXPECT_EQ(info.processType, UInt32('APPL'));
    EXPECT_EQ(info.processSignature, OSType('Prob'));
    EXPECT_EQ(info.processMode & 0x10C0, 0x10C0u);
    EXPECT_EQ(Low(info.processLauncher), Low(mOwn));
    EXPECT_EQ(std::string(name + 1, name + 1 + name[0]), "Probe");
    std::string path;
    ASSERT_EQ(carbon::PathFromSpec(spec, &path), noErr);
    EXPECT_EQ(path, fs::canonical(mFolder / "Probe.app/Contents/Linux/program"));
    FSRef bundle;
    ASSERT_EQ(GetProcessBundleLocation(&launch.psn, &bundle), noErr);
    ASSERT_EQ(carbon::PathFromRef(bundle, &path), noErr);
    EXPECT_EQ(path, fs::canonical(mFolder / "Probe.app"));
}

TEST_F(Launching, RunningApplicationIsNotStartedAgain) {
    const FSSpec spec = SleepingBundle();
    const Launch first(spec), again(spec);
    EXPECT_EQ(again.err, noErr);
    EXPECT_EQ(Low(again.psn), Low(first.psn));
    const Launch byProgram(SpecOf(mFolder / "Probe.app/Contents/Linux/program"));
    EXPECT_EQ(Low(byProgram.psn), Low(first.psn));
}

TEST_F(Launching, ManyHostsAtOnceStartOneCopy) {
    const FSSpec spec = SleepingBundle();
    int answers[2];
    ASSERT_EQ(pipe(answers), 0);
    std::vector<pid_t> hosts;
    for (int each = 0; each < 16; ++each) {
        hosts.push_back(fork());
        if (hosts.back() != 0) continue;
        const Launch launch(spec, launchContinue | launchDontSwitch);
        const UInt32 number = launch.err == noErr ? Low(launch.psn) : 0;
        _exit(write(answers[1], &number, sizeof number) == sizeof number ? 0 : 1);
    }
    std::set<UInt32> numbers;
    for (const pid_t host : hosts) {
        UInt32 number = 0;
        ASSERT_EQ(read(answers[0], &number, sizeof number), ssize_t(sizeof number));
        numbers.insert(number);
        waitpid(host, nullptr, 0);
    }
    EXPECT_EQ(numbers.size(), 1u);
    EXPECT_NE(*numbers.begin(), 0u);
}

TEST_F(Launching, ProgramThatRegistersKeepsTheNumberOfItsLaunch) {
    const Launch launch(ListeningBundle());
    ASSERT_EQ(launch.err, noErr);
    EXPECT_TRUE(Eventually([&] {
        const auto entry = carbon::FindProcess(launch.psn);
        return entry && entry->socketReady && !entry->starting;
    }));
    const auto byPid = carbon::FindProcessByPid(PidOf(launch.psn));
    ASSERT_TRUE(byPid);
    EXPECT_EQ(Low(byPid->psn), Low(launch.psn));
    EXPECT_EQ(byPid->signature, OSType('Prob'));
}

TEST_F(Launching, IsSeenByMonitorsAsOneOpeningEvent) {
    const FSSpec spec = SleepingBundle();
    TestMonitor monitor;
    const Launch launch(spec);
    ASSERT_EQ(launch.err, noErr);
    const auto seen = monitor.Take(2);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].kind, UInt32(kPlatformEventSent));
    EXPECT_EQ(seen[0].id, AEEventID(kAEOpenApplication));
    EXPECT_EQ(seen[0].sender, Low(mOwn));
    EXPECT_EQ(seen[0].target, Low(launch.psn));
    EXPECT_EQ(seen[0].targetName, "Probe");
    EXPECT_EQ(seen[0].replyMode, kAENoReply);
    EXPECT_EQ(seen[1].kind, UInt32(kPlatformEventEnded));
    EXPECT_EQ(seen[1].exchange, seen[0].exchange);
    EXPECT_EQ(seen[1].error, noErr);
    EXPECT_EQ(Launch(spec).err, noErr);
    EXPECT_EQ(monitor.TakeWaiting().size(), 0u) << "it was running";
}

TEST_F(Launching, FirstEventIsOpenApplicationAlsoWhenAnotherIsSentAtOnce) {
    const Launch launch(ListeningBundle());
    ASSERT_EQ(launch.err, noErr);
    AppleEvent event = {}, none = {};
    AEAddressDesc target = {};
    const ProcessSerialNumber address = {EndianU32_NtoB(launch.psn.highLongOfPSN),
                                         EndianU32_NtoB(Low(launch.psn))};
    AECreateDesc(typeProcessSerialNumber, &address, sizeof address, &target);
    AECreateAppleEvent('test', 'frst', &target, kAutoGenerateReturnID, kAnyTransactionID, &event);
    EXPECT_EQ(AESend(&event, &none, kAENoReply, kAENormalPriority, kNoTimeOut, nullptr, nullptr),
              noErr);
    AEDisposeDesc(&event);
    AEDisposeDesc(&target);
    EXPECT_TRUE(Eventually([&] { return Log() == "aevt oapp\ntest frst\n"; })) << Log();
}

TEST_F(Launching, ParametersTakeThePlaceOfOpenApplication) {
    AppleEvent event = {};
    AECreateAppleEvent('test', 'parm', nullptr, kAutoGenerateReturnID, kAnyTransactionID, &event);
    const Size size = AESizeOfFlattenedDesc(&event);
    std::vector<UInt8> bytes(sizeof(AppParameters) + size_t(size));
    ASSERT_EQ(
        AEFlattenDesc(&event, reinterpret_cast<Ptr>(&bytes[sizeof(AppParameters)]), size, nullptr),
        noErr);
    AEDisposeDesc(&event);
    auto* parameters = reinterpret_cast<AppParametersPtr>(bytes.data());
    parameters->messageLength = UInt32(size);
    const FSSpec spec = ListeningBundle();
    const Launch launch(spec, launchContinue, parameters);
    EXPECT_EQ(launch.err, noErr);
    EXPECT_TRUE(Eventually([&] { return Log() == "test parm\n"; })) << Log();
    // One that runs already gets them as any other event.
    EXPECT_EQ(Launch(spec, launchContinue, parameters).err, noErr);
    EXPECT_TRUE(Eventually([&] { return Log() == "test parm\ntest parm\n"; })) << Log();
    parameters->messageLength = 3;
    EXPECT_EQ(Launch(spec, launchContinue, parameters).err, paramErr);
}

TEST_F(Launching, ProgramThatDiesAtOnceFreesItsEntry) {
    BundleText text;
    text.program = "#!/bin/sh\nexit 3\n";
    const FSSpec spec = Bundle(text);
    const Launch first(spec);
    ASSERT_EQ(first.err, noErr);
    EXPECT_TRUE(Eventually([&] { return !carbon::FindProcess(first.psn); }));
    const Launch second(spec);
    EXPECT_EQ(second.err, noErr);
    EXPECT_GT(Low(second.psn), Low(first.psn));
}

TEST_F(Launching, EndedProgramIsNotLeftForTheHostToReap) {
    const Launch launch(SleepingBundle());
    const pid_t pid = PidOf(launch.psn);
    const pid_t hosts = fork();
    if (hosts == 0) _exit(7);
    EXPECT_EQ(KillProcess(&launch.psn), noErr);
    EXPECT_TRUE(Eventually([&] { return kill(pid, 0) != 0; }));
    int status = 0;
    EXPECT_EQ(waitpid(hosts, &status, 0), hosts);
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

SInt32 sObituaryStatus;
UInt32 sObituaryNumber;

OSErr ReadObituary(const AppleEvent* inEvent, AppleEvent*, SInt32) {
    ProcessSerialNumber psn = {};
    SInt32 status = 0;
    AEGetParamPtr(inEvent, keyProcessSerialNumber, typeProcessSerialNumber, nullptr, &psn,
                  sizeof psn, nullptr);
    AEGetParamPtr(inEvent, keyErrorNumber, typeSInt32, nullptr, &status, sizeof status, nullptr);
    sObituaryNumber = EndianU32_BtoN(Low(psn));
    sObituaryStatus = EndianS32_BtoN(status);
    return noErr;
}

TEST_F(Launching, LauncherLearnsOfTheEndAndItsStatus) {
    AEInstallEventHandler(kCoreEventClass, kAEApplicationDied, NewAEEventHandlerUPP(ReadObituary),
                          0, false);
    BundleText text;
    text.program = "#!/bin/sh\nexit 3\n";
    const Launch launch(Bundle(text));
    EXPECT_TRUE(Eventually([&] {
        EventRecord event;
        if (WaitNextEvent(highLevelEventMask, &event, 1, nullptr)) AEProcessAppleEvent(&event);
        return sObituaryNumber == Low(launch.psn);
    }));
    EXPECT_EQ(sObituaryStatus, 3);
}

std::set<std::string> FilesOf(const fs::path& inFacts) {
    std::set<std::string> files;
    for (const auto& file : fs::directory_iterator(inFacts / "fd"))
        files.insert(file.path().filename().string());
    return files;
}

TEST_F(Launching, ChildGetsASessionOfItsOwnAndNoneOfTheHostsFiles) {
    const int inherited = dup(0);  // without close-on-exec
    const Launch launch(SleepingBundle());
    close(inherited);
    const pid_t pid = PidOf(launch.psn);
    const fs::path facts = "/proc/" + std::to_string(pid);
    ASSERT_TRUE(Eventually([&] { return ReadFile(facts / "comm") == "sleep\n"; }));
    // While it starts, a program has its libraries open.
    EXPECT_TRUE(Eventually([&] { return FilesOf(facts) == std::set<std::string>{"0", "1", "2"}; }));
    EXPECT_EQ(getsid(pid), pid);
    EXPECT_EQ(fs::read_symlink(facts / "cwd"), "/");
}

TEST_F(Launching, LaunchedProgramIsInFrontUntilItEnds) {
    const Launch launch(SleepingBundle());
    EXPECT_TRUE(IsFront(launch.psn));
    KillProcess(&launch.psn);
    EXPECT_TRUE(Eventually([&] { return IsFront(mOwn); }));
}

TEST_F(Launching, DontSwitchLeavesTheFrontAlone) {
    ASSERT_EQ(SetFrontProcess(&mOwn), noErr);
    const FSSpec spec = SleepingBundle();
    const Launch launch(spec, launchContinue | launchDontSwitch);
    EXPECT_TRUE(IsFront(mOwn));
    const Launch again(spec, launchContinue | launchDontSwitch);
    EXPECT_TRUE(IsFront(mOwn));
    const Launch switching(spec);
    EXPECT_TRUE(IsFront(launch.psn));
}

TEST_F(Launching, BackgroundProgramNeverComesToTheFront) {
    BundleText text;
    text.more = "<key>LSBackgroundOnly</key><true/>";
    text.program = kSleeper;
    const FSSpec spec = Bundle(text);
    EXPECT_EQ(Launch(spec, launchContinue | launchInhibitDaemon).err, appIsDaemon);
    ASSERT_EQ(SetFrontProcess(&mOwn), noErr);
    const Launch launch(spec);
    ASSERT_EQ(launch.err, noErr);
    EXPECT_TRUE(IsFront(mOwn));
    EXPECT_EQ(SetFrontProcess(&launch.psn), appIsDaemon);
}

TEST_F(Launching, PlainProgramFileIsAnApplicationOfUnknownCreator) {
    MakeProgram(mFolder / "tool", kSleeper);
    const Launch launch(SpecOf(mFolder / "tool"));
    ASSERT_EQ(launch.err, noErr);
    const auto entry = carbon::FindProcess(launch.psn);
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->type, OSType('APPL'));
    EXPECT_EQ(entry->signature, 0x3F3F3F3Fu);
    EXPECT_EQ(std::string(entry->name + 1, entry->name + 1 + entry->name[0]), "tool");
}

TEST_F(Launching, WhatCannotRunIsRefusedWithItsOwnCode) {
    const FSSpec missing = SleepingBundle();
    fs::remove_all(mFolder / "Probe.app");
    EXPECT_EQ(Launch(missing).err, fnfErr);

    std::ofstream(mFolder / "text") << "a document";
    EXPECT_EQ(Launch(SpecOf(mFolder / "text")).err, kLSNotAnApplicationErr);

    fs::create_directory(mFolder / "folder");
    EXPECT_EQ(Launch(SpecOf(mFolder / "folder")).err, kLSNotAnApplicationErr);

    EXPECT_EQ(Launch(Bundle({}, "Empty.app")).err, kLSNoExecutableErr);

    BundleText text;
    text.program = kSleeper;
    const FSSpec forbidden = Bundle(text, "Forbidden.app");
    fs::permissions(mFolder / "Forbidden.app/Contents/Linux/program", fs::perms::owner_read);
    EXPECT_EQ(Launch(forbidden).err, kLSNoLaunchPermissionErr);

    text.program = "neither a script nor a program of this system";
    EXPECT_EQ(Launch(Bundle(text, "Foreign.app")).err, kLSExecutableIncorrectFormat);

    text.type = "FMWK";
    EXPECT_EQ(Launch(Bundle(text, "Library.app")).err, kLSNotAnApplicationErr);
    EXPECT_EQ(carbon::NextProcess(mOwn), std::nullopt);
}

TEST_F(Launching, BlockOfAnotherShapeIsRefused) {
    FSSpec spec = SleepingBundle();
    LaunchParamBlockRec block = {};
    block.launchControlFlags = launchContinue;
    block.launchAppSpec = &spec;
    EXPECT_EQ(LaunchApplication(&block), paramErr);
    block.launchBlockID = extendedBlock;
    EXPECT_EQ(LaunchApplication(&block), paramErr);
    block.launchEPBLength = extendedBlockLen;
    block.launchAppSpec = nullptr;
    EXPECT_EQ(LaunchApplication(&block), paramErr);
    EXPECT_EQ(LaunchApplication(nullptr), paramErr);
}

TEST_F(Launching, WithoutContinueTheCallerEndsAlsoAfterAFailure) {
    static int sExits;
    sExits = 0;
    PlatformSetExitHook([](void*) { ++sExits; }, nullptr);
    EXPECT_EQ(Launch(SleepingBundle(), 0).err, noErr);
    EXPECT_EQ(sExits, 1);
    EXPECT_EQ(Launch(Bundle({}, "Empty.app"), 0).err, kLSNoExecutableErr);
    EXPECT_EQ(sExits, 2);
    PlatformSetExitHook(nullptr, nullptr);
}

TEST_F(Launching, LinuxProgramIsPreferredAndMacOSFolderIsTakenElse) {
    BundleText text;
    text.program = kSleeper;
    text.programFolder = "MacOS";
    const Launch other(Bundle(text, "Other.app"));
    ASSERT_EQ(other.err, noErr);
    EXPECT_TRUE(carbon::ExecutablePath(other.psn).ends_with("MacOS/program"));
    Bundle(text, "Both.app");
    text.programFolder = "Linux";
    const Launch both(Bundle(text, "Both.app"));
    ASSERT_EQ(both.err, noErr);
    EXPECT_TRUE(carbon::ExecutablePath(both.psn).ends_with("Linux/program"));
}

}  // namespace
