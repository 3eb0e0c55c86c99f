// The recorder in its own process, asked by events: every row of its dictionary, and what it
// refuses.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "cli/Failure.h"
#include "cli/Recorder.h"
#include "cli/Specs.h"
#include "support/Command.h"
#include "support/Eventually.h"
#include "support/TemporaryHome.h"
#include "support/Tree.h"
#include "vantor/api/Vantor.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/MoreAEObjects.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/process/UProcess.h"

namespace {

namespace fs = std::filesystem;
using cli::kApplication;
using cli::kDisc;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TemporaryHome gHome;

SInt32 CodeOf(const std::function<void()>& inWork) {
    try {
        inWork();
        return noErr;
    } catch (const cli::Failure& failure) {
        return failure.Code();
    }
}

// An event to the recorder, sent and waited for.
class Event {
  public:
    Event(AEEventClass inClass, AEEventID inID) {
        EXPECT_EQ(MoreAECreateAppleEventSignatureTarget('Fv8k', 'APPL', inClass, inID, mEvent),
                  noErr);
    }
    Event& Put(AEKeyword inKeyword, const AEDesc* inValue) {
        EXPECT_EQ(AEPutParamDesc(mEvent, inKeyword, inValue), noErr);
        return *this;
    }
    Event& Flag(AEKeyword inKeyword, bool inValue) {
        return Put(inKeyword, StAEDescriptor(Boolean(inValue)));
    }
    Event& Disc() {
        StAEDescriptor application, disc;
        EXPECT_EQ(MoreAEOCreateObjSpecifierFormAbsPos('Disc', application, 1, false, disc), noErr);
        return Put(keyDirectObject, disc);
    }
    SInt32 Send() {
        mReply.Dispose();
        const OSErr err =
            AESend(mEvent, mReply, kAEWaitReply, kAENormalPriority, 60 * 60, nullptr, nullptr);
        return err != noErr ? err : MoreAEGetHandlerError(mReply);
    }
    std::string Sentence() {
        StAEDescriptor text(mReply, keyErrorString, typeUTF8Text);
        std::string bytes(size_t(AEGetDescDataSize(text)), '\0');
        AEGetDescData(text, bytes.data(), Size(bytes.size()));
        return bytes;
    }
    const StAEDescriptor& Reply() const { return mReply; }

  private:
    StAEDescriptor mEvent, mReply;
};

class Recorder : public ::testing::Test {
  protected:
    Recorder() {
        mRoot = gHome.Root() / ::testing::UnitTest::GetInstance()->current_test_info()->name();
        mSource = mRoot / "source";
        mImage = mRoot / "disc.iso";
        fs::create_directories(mSource);
        fs::remove_all(mDrive);
        fs::create_directories(mDrive);
        EXPECT_EQ(VantorInitiateSession(), noErr);
        EXPECT_EQ(VantorMakeNewDisc('Data'), noErr);
    }
    ~Recorder() override {
        if (VantorIsMirelRunning()) cli::CancelJob();
        EXPECT_TRUE(Eventually([] { return !VantorIsMirelBusy(); }));
        EXPECT_EQ(VantorTerminateSession(), noErr);
        EXPECT_TRUE(Eventually([] { return !VantorIsMirelRunning(); }));
        fs::remove_all(mRoot);
    }

    OSStatus Add(const std::vector<std::string>& inPaths) {
        auto specs = cli::SpecsOf(inPaths);
        return VantorAddFiles(specs.data(), SInt32(specs.size()));
    }
    // Enough to be still at it when the next request comes.
    void AddMuch() {
        for (int i = 0; i < 16; ++i) WriteSparseFile(mSource / std::to_string(i), 1LL << 30);
        ASSERT_EQ(Add({mSource}), noErr);
        cli::SetText(kDisc, 'oPth', mImage);
    }
    void StartMuch() {
        AddMuch();
        ASSERT_EQ(VantorWriteDiscWithOptions(1, 1, 1, false, false), noErr);
        ASSERT_TRUE(Eventually([] { return cli::GetCode(kDisc, 'phas') == 'writ'; }));
    }
    void BeManual() { std::ofstream(mDrive / "settings") << "blanks manual\n"; }
    static SInt32 Status() {
        SInt32 status = 0;
        EXPECT_EQ(VantorGetStatusCode(&status), noErr);
        return status;
    }

    fs::path mRoot, mSource, mImage;
    const fs::path mDrive = gHome.Root() / "data/vantor/drives/image";
};

TEST_F(Recorder, WritesAVerifiedDiscThroughTheLibrary) {
    WriteFile(mSource / "file", 12345);
    ASSERT_EQ(Add({mSource}), noErr);
    cli::SetText(kDisc, 'oPth', mImage);
    ASSERT_EQ(VantorWriteDisc(), noErr);
    ASSERT_TRUE(Eventually([] { return !VantorIsMirelBusy(); }));
    EXPECT_EQ(Status(), 0);
    EXPECT_TRUE(cli::GetBoolean(kDisc, 'vfyd'));
    EXPECT_EQ(cli::GetText(kDisc, 'rPth'), mImage);
    EXPECT_EQ(cli::GetNumber(kDisc, 'nFil'), 2);
    EXPECT_EQ(cli::GetNumber(kDisc, 'eCod'), 0);
    EXPECT_EQ(cli::GetNumber(kDisc, 'bTot'), SInt64(fs::file_size(mImage)));
    EXPECT_EQ(cli::GetCode(kDisc, 'phas'), OSType('done'));
    fs::create_directory(mRoot / "out");
    ASSERT_EQ(RunCommand({"bsdtar", "-xpf", mImage, "-C", mRoot / "out"}).exitCode, 0);
    EXPECT_THAT(DifferencesOf(mSource, mRoot / "out/source"), IsEmpty());
}

TEST_F(Recorder, ModesAreReadAndWritten) {
    Boolean on = false;
    EXPECT_EQ(VantorSetServerMode(true), noErr);
    EXPECT_EQ(VantorGetServerMode(&on), noErr);
    EXPECT_TRUE(on);
    EXPECT_EQ(VantorSetServerMode(false), noErr);
    EXPECT_EQ(VantorGetServerMode(&on), noErr);
    EXPECT_FALSE(on);
    EXPECT_EQ(VantorSetSimulationMode(true), noErr);
    EXPECT_EQ(VantorGetSimulationMode(&on), noErr);
    EXPECT_TRUE(on);
    EXPECT_EQ(VantorSetSimulationMode(false), noErr);
}

TEST_F(Recorder, SimulationLeavesNothing) {
    WriteFile(mSource / "file", 12345);
    ASSERT_EQ(VantorSetSimulationMode(true), noErr);
    ASSERT_EQ(Add({mSource}), noErr);
    cli::SetText(kDisc, 'oPth', mImage);
    ASSERT_EQ(VantorWriteDisc(), noErr);
    ASSERT_TRUE(Eventually([] { return !VantorIsMirelBusy(); }));
    EXPECT_EQ(Status(), 0);
    EXPECT_THAT(cli::GetText(kDisc, 'sTxt'), HasSubstr("Simulated"));
    EXPECT_TRUE(cli::GetBoolean(kDisc, 'siml'));
    ASSERT_EQ(VantorSetSimulationMode(false), noErr);
    EXPECT_TRUE(cli::GetBoolean(kDisc, 'siml')) << "what was done, not what is set";
    EXPECT_THAT(NamesIn(mRoot), ElementsAre("source"));
}

TEST_F(Recorder, SizeIsInKiBOfWholeBlocks) {
    WriteFile(mSource / "one", 1);
    WriteFile(mSource / "two", 2049);
    SInt32 size = -1;
    EXPECT_EQ(VantorGetDiscSize(&size), noErr);
    EXPECT_EQ(size, 0);
    ASSERT_EQ(Add({mSource}), noErr);
    EXPECT_EQ(VantorGetDiscSize(&size), noErr);
    EXPECT_EQ(size, 6);
}

TEST_F(Recorder, StatusTextIsAPascalStringInMacRoman) {
    Str255 text = {};
    EXPECT_EQ(VantorGetStatusText(text), noErr);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(text) + 1, text[0]), "Idle.");
}

TEST_F(Recorder, TextIsGivenInTheTypeAskedFor) {
    cli::SetText(kDisc, 'pnam', "Grüße 日本");
    EXPECT_EQ(cli::GetText(kDisc, 'pnam'), "Grüße 日本");
    StAEDescriptor application, disc, property;
    MoreAEOCreateObjSpecifierFormAbsPos('Disc', application, 1, false, disc);
    MoreAEOCreatePropertyObject('pnam', disc, property);
    Event event('core', 'getd');
    ASSERT_EQ(event.Put(keyDirectObject, property).Send(), noErr);
    StAEDescriptor answer(*static_cast<const AEDesc*>(event.Reply()), keyDirectObject);
    EXPECT_EQ(answer.mDesc.descriptorType, DescType(typeChar));
    std::string bytes(size_t(AEGetDescDataSize(answer)), '\0');
    AEGetDescData(answer, bytes.data(), Size(bytes.size()));
    EXPECT_EQ(bytes,
              "Gr\x9F\xA7"
              "e ??");
}

TEST_F(Recorder, BlankDiscIsThereAfterARequestAndGoneAfterEjecting) {
    SInt32 media = -1;
    EXPECT_EQ(VantorGetMediaInfo(&media), noErr);
    EXPECT_EQ(media, 0);
    EXPECT_EQ(VantorRequestBlankDisc(&media), noErr);
    EXPECT_EQ(media, 127 | 0x100);
    EXPECT_EQ(VantorEjectDisc(), noErr);
    EXPECT_EQ(VantorGetMediaInfo(&media), noErr);
    EXPECT_EQ(media, 0);
}

TEST_F(Recorder, RequestInAManualDriveIsAnsweredWhenTheDiscIsThere) {
    BeManual();
    std::thread person([this] {
        Eventually([this] { return fs::exists(mDrive / "tray"); });
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        std::ofstream(mDrive / "tray/blank.iso").close();
    });
    SInt32 media = -1;
    EXPECT_EQ(VantorRequestBlankDisc(&media), noErr);
    EXPECT_EQ(media, 127 | 0x100);
    person.join();
}

// Another process cancels while this one waits for its blank disc.
TEST_F(Recorder, CancelledRequestIsUserCancelled) {
    BeManual();
    const pid_t child = fork();
    if (child == 0) {
        const bool isWaiting = Eventually([] { return Status() == 2; });
        const std::string text = cli::GetText(kDisc, 'sTxt');
        cli::CancelJob();
        _exit(isWaiting && text.find("waiting for a blank disc") != text.npos ? 42 : 1);
    }
    SInt32 media = 0;
    EXPECT_EQ(VantorRequestBlankDisc(&media), userCanceledErr);
    EXPECT_EQ(media, userCanceledErr);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 42);
}

// The disc in the making is the fixture's.
TEST_F(Recorder, AnotherHostsMediumIsLeftAlone) {
    const pid_t child = fork();
    if (child == 0) {
        SInt32 media = 0;
        _exit(VantorRequestBlankDisc(&media) == fBsyErr && VantorEjectDisc() == fBsyErr ? 42 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 42);
    EXPECT_EQ(VantorRequestBlankDisc(nullptr), noErr);
    EXPECT_EQ(VantorEjectDisc(), noErr);
}

TEST_F(Recorder, CancelStopsAWriteWithinTwoSeconds) {
    StartMuch();
    cli::CancelJob();
    EXPECT_TRUE(Eventually([] { return !VantorIsMirelBusy(); }, 2));
    EXPECT_EQ(Status(), userCanceledErr);
    EXPECT_EQ(cli::GetCode(kDisc, 'phas'), OSType('canc'));
    EXPECT_THAT(NamesIn(mRoot), ElementsAre("source"));
}

TEST_F(Recorder, BusyRecorderAnswersQuestionsAndRefusesChanges) {
    StartMuch();
    EXPECT_TRUE(VantorIsMirelBusy());
    const SInt32 status = Status();
    EXPECT_GE(status, 2);
    EXPECT_LE(status, 100);
    EXPECT_THAT(cli::GetText(kDisc, 'sTxt'), HasSubstr("Writing: "));
    EXPECT_EQ(VantorMakeNewDisc('Data'), fBsyErr);
    EXPECT_EQ(Add({mSource}), fBsyErr);
    EXPECT_EQ(VantorWriteDisc(), fBsyErr);
    EXPECT_EQ(VantorEjectDisc(), fBsyErr);
    EXPECT_EQ(CodeOf([] { cli::SetText(kDisc, 'pnam', "other"); }), fBsyErr);
}

TEST_F(Recorder, QuitDuringAWriteIsAnsweredAtOnceAndDoneAfterIt) {
    WriteSparseFile(mSource / "file", 1LL << 28);
    ASSERT_EQ(Add({mSource}), noErr);
    cli::SetText(kDisc, 'oPth', mImage);
    ASSERT_EQ(VantorWriteDisc(), noErr);
    EXPECT_EQ(Event('aevt', 'quit').Send(), noErr);
    EXPECT_FALSE(fs::exists(mImage));
    ASSERT_TRUE(Eventually([] { return !UProcess::IsRunning('Fv8k', 'APPL'); }));
    EXPECT_TRUE(fs::exists(mImage));
    EXPECT_EQ(fs::status(mImage).permissions(), fs::perms(0444));
}

TEST_F(Recorder, EndOfTheSessionTurnsServerModeOff) {
    EXPECT_EQ(VantorSetServerMode(true), noErr);
    EXPECT_TRUE(cli::GetBoolean(kApplication, 'srvM'));
    EXPECT_EQ(Event('Fv8k', 'EndB').Send(), noErr);
    EXPECT_TRUE(Eventually([] { return !cli::GetBoolean(kApplication, 'srvM'); }));
}

TEST_F(Recorder, SynchronousWriteIsAnsweredAtItsEnd) {
    WriteFile(mSource / "file", 100'000);
    ASSERT_EQ(Add({mSource}), noErr);
    cli::SetText(kDisc, 'oPth', mImage);
    EXPECT_EQ(Event('Fv8k', 'wrIt').Disc().Flag('Asyn', false).Send(), noErr);
    EXPECT_TRUE(fs::exists(mImage));
    Event again('Fv8k', 'wrIt');
    EXPECT_EQ(again.Disc().Send(), dupFNErr);
    EXPECT_THAT(again.Sentence(), HasSubstr("disc.iso: a file of this name exists already."));
}

TEST_F(Recorder, KindsOfDisc) {
    EXPECT_EQ(VantorMakeNewDisc('Hybr'), noErr);
    EXPECT_EQ(cli::GetCode(kDisc, 'pcls'), OSType('Hybr'));
    EXPECT_EQ(VantorMakeNewDisc('Disc'), noErr);
    EXPECT_EQ(cli::GetCode(kDisc, 'pcls'), OSType('Data'));
    EXPECT_EQ(VantorMakeNewDisc('Audi'), errAECantHandleClass);
}

TEST_F(Recorder, ANewDiscForgetsTheOld) {
    WriteFile(mSource / "file", 10);
    ASSERT_EQ(Add({mSource}), noErr);
    cli::SetText(kDisc, 'pnam', "Name");
    cli::SetText(kDisc, 'oPth', mImage);
    cli::SetBoolean(kDisc, 'oRpl', true);
    ASSERT_EQ(VantorMakeNewDisc('Data'), noErr);
    EXPECT_EQ(cli::GetText(kDisc, 'pnam'), "");
    EXPECT_EQ(cli::GetText(kDisc, 'oPth'), "");
    EXPECT_FALSE(cli::GetBoolean(kDisc, 'oRpl'));
    EXPECT_EQ(VantorWriteDisc(), paramErr) << "nothing to write";
}

TEST_F(Recorder, ItemsOfOneNameAreRefused) {
    WriteFile(mSource / "same", 10);
    fs::create_directory(mRoot / "other");
    WriteFile(mRoot / "other/same", 10);
    EXPECT_EQ(Add({mSource / "same", mRoot / "other/same"}), dupFNErr);
    EXPECT_EQ(Add({mSource / "same"}), noErr);
    EXPECT_EQ(Add({mRoot / "other/same"}), dupFNErr);
}

TEST_F(Recorder, NothingIsAddedWhenOneItemIsMissing) {
    WriteFile(mSource / "file", 10);
    auto specs = cli::SpecsOf({mSource / "file", mSource});
    fs::remove_all(mSource);
    EXPECT_NE(VantorAddFiles(specs.data(), 2), noErr);
    SInt32 size = -1;
    EXPECT_EQ(VantorGetDiscSize(&size), noErr);
    EXPECT_EQ(size, 0);
}

TEST_F(Recorder, AnEmptyListIsNoError) {
    EXPECT_EQ(VantorAddFiles(nullptr, 0), noErr);
}

TEST_F(Recorder, DrivesAreElements) {
    EXPECT_EQ(cli::CountElements('Disc'), 1);
    const SInt32 count = cli::CountElements('Driv');
    EXPECT_GE(count, 1);
    const cli::Object last = {'Driv', count};
    EXPECT_EQ(cli::GetText(last, 'ID  '), mDrive);
    EXPECT_EQ(cli::GetCode(last, 'dKnd'), OSType('imag'));
    EXPECT_GT(cli::GetNumber(last, 'spac'), 0);
    EXPECT_NE(cli::GetText(last, 'pnam'), "");
    EXPECT_EQ(CodeOf([&] { cli::GetText({'Driv', count + 1}, 'ID  '); }), errAENoSuchObject);
}

TEST_F(Recorder, DrivesAreChosenByIdentifier) {
    fs::create_directories(mRoot / "drive/tray");
    cli::SetText(kApplication, 'cDrv', mRoot / "drive");
    EXPECT_EQ(cli::GetText(kApplication, 'cDrv'), mRoot / "drive");
    EXPECT_EQ(CodeOf([] { cli::SetText(kApplication, 'cDrv', "/dev/null"); }), nsDrvErr);
    EXPECT_EQ(cli::GetText(kApplication, 'cDrv'), mRoot / "drive");
    cli::SetText(kApplication, 'cDrv', mDrive);
}

TEST_F(Recorder, SaysWhoItIs) {
    EXPECT_EQ(cli::GetText(kApplication, 'pnam'), "Calverin");
    EXPECT_EQ(cli::GetText(kApplication, 'vers'), "7.5");
    cli::GetBoolean(kApplication, 'pisf');
}

TEST_F(Recorder, UnknownAndReadOnlyPropertiesHaveTheirErrors) {
    EXPECT_EQ(CodeOf([] { cli::GetNumber(kApplication, 'what'); }), errAENoSuchObject);
    EXPECT_EQ(CodeOf([] { cli::GetNumber(kDisc, 'srvM'); }), errAENoSuchObject);
    EXPECT_EQ(CodeOf([] { cli::GetNumber({'Disc', 2}, 'sCod'); }), errAENoSuchObject);
    EXPECT_EQ(CodeOf([] { cli::GetNumber({'Cake', 1}, 'sCod'); }), errAENoSuchObject);
    EXPECT_EQ(CodeOf([] { cli::SetText(kDisc, 'sTxt', "x"); }), errAENotModifiable);
    EXPECT_EQ(CodeOf([] { cli::SetText(kDisc, 'oPth', "relative"); }), paramErr);
}

TEST_F(Recorder, UnknownEventsAreNotHandledAndUnknownParametersMissed) {
    EXPECT_EQ(Event('Fv8k', 'what').Send(), errAEEventNotHandled);
    EXPECT_EQ(Event('Fv8k', 'Ejct').Flag('what', true).Send(), errAEParamMissed);
    EXPECT_EQ(Event('Fv8k', 'addD').Disc().Send(), errAEDescNotFound);
}

TEST_F(Recorder, CancelWithoutAJobIsNoError) {
    EXPECT_EQ(CodeOf([] { cli::CancelJob(); }), noErr);
}

TEST(ExitStatuses, TellWhatTheJobsCodeMeans) {
    EXPECT_EQ(cli::ExitFor(dataVerErr), cli::kNotVerified);
    for (const SInt32 code : {-43, -5000, -37})
        EXPECT_EQ(cli::ExitFor(code), cli::kBadSource) << code;
    for (const SInt32 code : {-56, -65, -68})
        EXPECT_NE(cli::SentenceFor(code), cli::SentenceFor(1)) << code;
}

// Another process tries for the disc that this one is putting together.
TEST_F(Recorder, OtherHostsAreRefusedWhileADiscIsInTheMaking) {
    const pid_t child = fork();
    if (child == 0) _exit(VantorMakeNewDisc('Data') == fBsyErr ? 42 : 1);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 42);
    EXPECT_EQ(VantorMakeNewDisc('Data'), noErr);
}

// What the child gives is its exit status; 42 is well.
void ExpectWell(const std::vector<pid_t>& inChildren) {
    for (const pid_t child : inChildren) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 42) << status;
    }
}

TEST_F(Recorder, OfTwoHostsThatComposeAtOnceOneGetsItsWholeDisc) {
    WriteFile(mSource / "file", 10);
    ASSERT_EQ(Event('Fv8k', 'EndB').Send(), noErr) << "the disc is nobody's";
    std::vector<pid_t> children;
    for (int i = 0; i < 2; ++i) {
        children.push_back(fork());
        if (children.back() != 0) continue;
        const std::string image = mImage.string() + std::to_string(i);
        // Whoever is refused tries again; nothing of the other's gets into its disc.
        const bool isMade = Eventually([] { return VantorMakeNewDisc('Data') == noErr; });
        const bool isAdded = isMade && Add({mSource}) == noErr;
        if (isAdded) cli::SetText(kDisc, 'oPth', image);
        const bool isWritten = isAdded && Event('Fv8k', 'wrIt').Disc().Send() == noErr;
        _exit(isWritten && cli::GetText(kDisc, 'rPth') == image ? 42 : 1);
    }
    ExpectWell(children);
    EXPECT_THAT(NamesIn(mRoot),
                ::testing::UnorderedElementsAre("source", "disc.iso0", "disc.iso1"));
}

TEST_F(Recorder, AHundredAndTwentyEightHostsAreAnswered) {
    std::vector<pid_t> children;
    for (int i = 0; i < 128; ++i) {
        children.push_back(fork());
        if (children.back() != 0) continue;
        bool isWell = true;
        for (int k = 0; k < 5 && isWell; ++k) {
            Boolean on = true;
            SInt32 code = -7;
            isWell = VantorGetStatusCode(&code) == noErr && code == 0 &&
                     VantorGetServerMode(&on) == noErr;
        }
        _exit(isWell ? 42 : 1);
    }
    ExpectWell(children);
    EXPECT_EQ(Status(), 0);
}

TEST_F(Recorder, FilesMayBeNamedByUrlsAndByPaths) {
    WriteFile(mSource / "a name", 10);
    WriteFile(mSource / "caf\xC3\xA9", 10);
    const std::string url = "file://localhost" + mSource.string() + "/a%20name";
    const std::string path = mSource / "caf\xC3\xA9";
    StAEDescriptor list;
    ASSERT_EQ(AECreateList(nullptr, 0, false, list), noErr);
    ASSERT_EQ(AEPutPtr(list, 0, typeFileURL, url.data(), Size(url.size())), noErr);
    ASSERT_EQ(AEPutPtr(list, 0, typeUTF8Text, path.data(), Size(path.size())), noErr);
    EXPECT_EQ(Event('Fv8k', 'addD').Disc().Put('kfil', list).Send(), noErr);
    SInt32 size = 0;
    EXPECT_EQ(VantorGetDiscSize(&size), noErr);
    EXPECT_EQ(size, 4) << "two blocks of two KiB";
}

TEST_F(Recorder, AUrlOrPathOfNothingIsFileNotFound) {
    const std::string path = mSource / "nothing", url = "file://localhost" + path;
    const StAEDescriptor byPath(typeUTF8Text, path.data(), Size(path.size()));
    const StAEDescriptor byUrl(typeFileURL, url.data(), Size(url.size()));
    const StAEDescriptor relative(typeUTF8Text, "name", 4);
    EXPECT_EQ(Event('Fv8k', 'addD').Disc().Put('kfil', byPath).Send(), fnfErr);
    EXPECT_NE(Event('Fv8k', 'addD').Disc().Put('kfil', byUrl).Send(), noErr);
    EXPECT_EQ(Event('Fv8k', 'addD').Disc().Put('kfil', relative).Send(), paramErr);
}

TEST_F(Recorder, QuitOfAnotherHostWaitsForTheDiscInTheMaking) {
    WriteFile(mSource / "file", 10);
    const pid_t child = fork();
    if (child == 0) _exit(Event('aevt', 'quit').Send() == noErr ? 42 : 1);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(WEXITSTATUS(status), 42);
    ASSERT_EQ(Add({mSource}), noErr);
    cli::SetText(kDisc, 'oPth', mImage);
    EXPECT_EQ(Event('Fv8k', 'wrIt').Disc().Send(), noErr);
    EXPECT_EQ(cli::GetText(kDisc, 'rPth'), mImage);
}

TEST_F(Recorder, ReportIsAListOfLines) {
    WriteFile(mSource / "what?", 10);
    ASSERT_EQ(mkfifo((mSource / "a pipe").c_str(), 0600), 0);
    ASSERT_EQ(Add({mSource}), noErr);
    cli::SetText(kDisc, 'oPth', mImage);
    EXPECT_EQ(Event('Fv8k', 'wrIt').Disc().Send(), noErr);
    EXPECT_THAT(cli::GetTexts(kDisc, 'rept'),
                ElementsAre(HasSubstr("what?: the name has"), HasSubstr("a pipe: a pipe")));
}

TEST_F(Recorder, TerminateSignalStopsTheJobAndLeavesNothing) {
    StartMuch();
    const ProcessSerialNumber psn = UProcess::GetPSN('Fv8k', 'APPL');
    pid_t pid = 0;
    ASSERT_EQ(GetProcessPID(&psn, &pid), noErr);
    kill(pid, SIGTERM);
    ASSERT_TRUE(Eventually([] { return !UProcess::IsRunning('Fv8k', 'APPL'); }, 4));
    EXPECT_THAT(NamesIn(mRoot), ElementsAre("source"));
}

TEST_F(Recorder, KilledWriteLeavesNothingAfterTheNextStart) {
    StartMuch();
    const ProcessSerialNumber psn = UProcess::GetPSN('Fv8k', 'APPL');
    ASSERT_EQ(KillProcess(&psn), noErr);
    ASSERT_TRUE(Eventually([] { return !UProcess::IsRunning('Fv8k', 'APPL'); }));
    EXPECT_FALSE(fs::exists(mImage));
    EXPECT_EQ(Status(), 0) << "a new recorder answers";
    EXPECT_THAT(NamesIn(mRoot), ElementsAre("source"));
}

}  // namespace
