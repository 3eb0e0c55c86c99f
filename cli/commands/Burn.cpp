// Owns a burn from the command line to the summary.
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <thread>

#include "Commands.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Json.h"
#include "Output.h"
#include "ProgressView.h"
#include "Recorder.h"
#include "Session.h"
#include "Specs.h"
#include "vantor/api/Vantor.h"

namespace cli {
namespace {

using SteadyClock = std::chrono::steady_clock;
constexpr auto kLookAgain = std::chrono::milliseconds(50);

bool IsDevice(const std::string& inPath) {
    std::error_code none;
    return std::filesystem::is_block_file(inPath, none);
}

OSType KindCode(const std::string& inKind) {
    return inKind == "hybrid" ? 'Hybr' : 'Data';
}

bool IsUtf8(const std::string& inText) {
    CFStringRef text =
        CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(inText.data()),
                                static_cast<CFIndex>(inText.size()), kCFStringEncodingUTF8, false);
    if (text != nullptr) CFRelease(text);
    return text != nullptr;
}

// "photos" for /home/me/photos; a disc of several things gets a neutral name, and so
// does one whose name is in another encoding.
std::string DefaultVolumeName(const BurnRequest& inRequest) {
    if (inRequest.files.size() != 1) return "Untitled";
    const auto name = std::filesystem::canonical(inRequest.files.front()).filename();
    return name.empty() || !IsUtf8(name.string()) ? "Untitled" : name.string();
}

// Simulation is a mode of the recorder and the chosen drive its choice, not those of one disc:
// whatever they were before comes back as soon as the job knows them.
class RecorderSettings {
  public:
    explicit RecorderSettings(const BurnRequest& inRequest) {
        ThrowIfFailed(VantorGetSimulationMode(&mSimulation), "read the simulation mode");
        if (IsDevice(inRequest.target)) mDrive = GetText(kApplication, 'cDrv');
        ThrowIfFailed(VantorSetSimulationMode(inRequest.simulate), "set the simulation mode");
        if (!mDrive.empty()) SetText(kApplication, 'cDrv', inRequest.target);
    }
    ~RecorderSettings() {
        VantorSetSimulationMode(mSimulation);
        try {
            if (!mDrive.empty()) SetText(kApplication, 'cDrv', mDrive);
        } catch (const Failure&) {
            return;  // a recorder that has gone has no drive chosen either
        }
    }
    RecorderSettings(const RecorderSettings&) = delete;
    RecorderSettings& operator=(const RecorderSettings&) = delete;

  private:
    Boolean mSimulation = 0;
    std::string mDrive;  // empty: was not changed
};

void CheckTarget(const BurnRequest& inRequest) {
    if (inRequest.target.empty() || IsDevice(inRequest.target)) return;
    std::error_code none;
    const auto path = std::filesystem::absolute(inRequest.target).lexically_normal();
    if (std::filesystem::is_directory(path, none))
        throw Failure(inRequest.target + " is a folder; name the image file to make.", paramErr,
                      kBadUsage);
    if (!std::filesystem::is_directory(path.parent_path(), none))
        throw Failure("The folder " + path.parent_path().string() + " does not exist.", dirNFErr,
                      kBadUsage);
    const auto status = std::filesystem::symlink_status(path, none);
    if (!std::filesystem::exists(status)) return;
    if (!std::filesystem::is_regular_file(status))
        throw Failure(inRequest.target + " is not a file that an image could replace.", dupFNErr);
    if (!inRequest.replace)
        throw Failure(inRequest.target + " is there already; --replace overwrites it.", dupFNErr);
}

void ChooseTarget(const BurnRequest& inRequest) {
    if (inRequest.target.empty() || IsDevice(inRequest.target)) return;
    const auto path = std::filesystem::absolute(inRequest.target).lexically_normal();
    SetText(kDisc, 'oPth', path.string());
    SetBoolean(kDisc, 'oRpl', inRequest.replace);
}

void PrepareDisc(const BurnRequest& inRequest, const std::vector<FSSpec>& inSpecs) {
    SetText(kDisc, 'pnam',
            inRequest.volumeName.empty() ? DefaultVolumeName(inRequest) : inRequest.volumeName);
    ChooseTarget(inRequest);
    ThrowIfFailed(
        VantorAddFiles(const_cast<FSSpec*>(inSpecs.data()), static_cast<SInt32>(inSpecs.size())),
        "add the files");
}

Progress LookAtJob() {
    Progress progress;
    progress.phase = GetCode(kDisc, 'phas');
    progress.percent = GetNumber(kDisc, 'pcnt');
    progress.bytesDone = GetNumber(kDisc, 'bDon');
    progress.bytesTotal = GetNumber(kDisc, 'bTot');
    progress.bytesPerSecond = GetNumber(kDisc, 'rate');
    progress.text = GetText(kDisc, 'sTxt');
    return progress;
}

bool IsRunning(OSType inPhase) {
    return inPhase == 'prep' || inPhase == 'writ' || inPhase == 'clos' || inPhase == 'veri';
}

// What the disc cannot hold as it is, by name: told once preparing is over, before the first block
// is written.
class Report {
  public:
    explicit Report(bool inJson) : mJson(inJson) {}

    void ShowWhenComplete(const Progress& inProgress, ProgressView& ioView) {
        if (mShown || inProgress.phase == 'prep') return;
        mShown = true;
        mLines = GetTexts(kDisc, 'rept');
        if (mLines.empty() || mJson) return;
        ioView.Finish();
        for (const auto& line : mLines) std::fprintf(stderr, "note: %s\n", line.c_str());
    }

    const std::vector<std::string>& Lines() const { return mLines; }

  private:
    bool mJson;
    bool mShown = false;
    std::vector<std::string> mLines;
};

// Follows the job until it ends; the first Ctrl-C cancels it, and the recorder then says so itself.
void FollowJob(ProgressView& ioView, Report& ioReport) {
    bool cancelSent = false;
    for (;;) {
        const Progress progress = LookAtJob();
        ioReport.ShowWhenComplete(progress, ioView);
        if (!IsRunning(progress.phase)) break;
        ioView.Show(progress);
        if (InterruptCount() > 0 && !cancelSent) {
            CancelJob();
            cancelSent = true;
        }
        std::this_thread::sleep_for(kLookAgain);
    }
    ioView.Finish();
}

// The recorder's own sentence, or ours where it has none.
std::string JobSentence(SInt32 inCode) {
    const std::string text = GetText(kDisc, 'eTxt');
    return text.empty() ? SentenceFor(inCode) : text;
}

void ThrowIfJobFailed() {
    const auto code = static_cast<SInt32>(GetNumber(kDisc, 'eCod'));
    if (code == noErr && GetCode(kDisc, 'phas') == 'done') return;
    if (code == noErr) throw Failure("The recorder does not know how the burn ended.", ioErr);
    if (code == userCanceledErr)
        throw Failure("Cancelled; nothing was left behind.", code, kInterrupted);
    throw Failure(JobSentence(code), code, ExitFor(code));
}

// A burner leaves no file: what was added is what there is to tell.
SInt64 SizeOf(const std::string& inImage) {
    std::error_code none;
    const auto size = std::filesystem::file_size(inImage, none);
    return none ? GetNumber(kDisc, 'DRsi') * 1024 : static_cast<SInt64>(size);
}

struct Summary {
    std::string path;
    SInt64 bytes = 0;
    SInt64 items = 0;
    double seconds = 0;
    bool verified = false;
    bool simulated = false;
};

void Print(const Summary& inSummary, const std::vector<std::string>& inNotes, bool inJson) {
    if (inJson) {
        PrintJson({{"event", "done"},
                   {"image", inSummary.path},
                   {"bytes", inSummary.bytes},
                   {"items", inSummary.items},
                   {"seconds", inSummary.seconds},
                   {"verified", inSummary.verified},
                   {"simulated", inSummary.simulated},
                   {"notes", inNotes}});
        return;
    }
    const char* what = inSummary.simulated  ? "Simulated; nothing was written"
                       : inSummary.verified ? "Written and verified"
                                            : "Written, not verified";
    std::printf("%s%s%s (%s, %s items, %.1f s)\n", what, inSummary.path.empty() ? "" : ": ",
                inSummary.path.c_str(), Bytes(inSummary.bytes).c_str(),
                Grouped(inSummary.items).c_str(), inSummary.seconds);
}

// The disc is ours from its making on: nobody else changes the settings until the job has them.
void StartJob(const BurnRequest& inRequest, const std::vector<FSSpec>& inSpecs) {
    ThrowIfFailed(VantorMakeNewDisc(KindCode(inRequest.kind)), "make a new disc");
    const RecorderSettings settings(inRequest);
    PrepareDisc(inRequest, inSpecs);
    const SInt16 eject = inRequest.eject.value_or(IsDevice(inRequest.target)) ? 1 : 0;
    const auto status = VantorWriteDiscWithOptions(1, eject, inRequest.verify, false, false);
    if (status == errAEWaitCanceled) AbandonJob();  // it may have begun all the same
    ThrowIfFailed(status, "start writing");
}

}  // namespace

void Burn(const BurnRequest& inRequest) {
    CheckTarget(inRequest);
    const std::vector<FSSpec> specs = SpecsOf(inRequest.files);
    const auto start = SteadyClock::now();

    InterruptDeferral deferral;
    Session session;
    StartJob(inRequest, specs);
    ProgressView view(inRequest.json);
    Report report(inRequest.json);
    try {
        FollowJob(view, report);
    } catch (const Failure&) {
        AbandonJob();  // a burn that nobody follows any more is not to replace anything
        throw;
    }
    ThrowIfJobFailed();

    Summary summary;
    summary.path = GetText(kDisc, 'rPth');
    summary.bytes = SizeOf(summary.path);
    summary.items = GetNumber(kDisc, 'nFil');
    summary.verified = GetBoolean(kDisc, 'vfyd');
    summary.simulated = GetBoolean(kDisc, 'siml');
    summary.seconds = std::chrono::duration<double>(SteadyClock::now() - start).count();
    Print(summary, report.Lines(), inRequest.json);
}

}  // namespace cli
