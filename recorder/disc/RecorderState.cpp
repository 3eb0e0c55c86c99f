// Owns the rules of what may be done when.
#include "disc/RecorderState.h"

#include <algorithm>
#include <filesystem>

#include "burn/BurnFailure.h"
#include "burn/disc_names.h"

namespace recorder {
namespace {

constexpr int kPatienceForBlankDisc = 600;  // seconds
constexpr size_t kLongestVolumeName = 255;

}  // namespace

RecorderState::RecorderState(DriveSource& inDrives, std::function<bool(HostId)> inIsAlive)
    : mDrives(inDrives), mIsAlive(std::move(inIsAlive)), mEngine(inDrives) {}

void RecorderState::ServeHost(HostId inHost) {
    mHost = inHost;
    mFoundDrives.clear();
    mFoundFacts.clear();
}

const std::vector<std::string>& RecorderState::Drives() {
    if (mFoundDrives.empty()) mFoundDrives = mDrives.Identifiers();
    return mFoundDrives;
}

const DriveInfo& RecorderState::Drive(const std::string& inIdentifier) {
    const auto found = mFoundFacts.find(inIdentifier);
    if (found != mFoundFacts.end()) return found->second;
    return mFoundFacts[inIdentifier] = mEngine.Probe(inIdentifier);
}

void RecorderState::RefuseWhileBusy() {
    Settle();
    if (mEngine.Busy()) throw BurnFailure(fBsyErr, "A disc is being written.");
}

bool RecorderState::IsOther(HostId inHost) const {
    return inHost != 0 && inHost != mHost && mIsAlive(inHost);
}

void RecorderState::RefuseOthers() {
    RefuseWhileBusy();
    RefuseWhileComposed();
}

void RecorderState::RefuseWhileComposed() {
    Settle();
    if (IsOther(mOwner)) throw BurnFailure(fBsyErr, "Another program is putting a disc together.");
}

// From its first change until it is written, a disc is its host's alone: mOwner is set by every
// change, and by none that was refused.
void RecorderState::MakeDisc(OSType inKind) {
    RefuseOthers();
    mDisc = MakeDocument(inKind);
    mOwner = mHost;
    mEnds.erase(mHost);
    mEngine.Forget();
    mEngine.Measure({});
}

void RecorderState::AddItems(const std::vector<std::string>& inPaths) {
    RefuseOthers();
    mDisc.Add(inPaths);
    mOwner = mHost;
    mEngine.Measure(mDisc.paths);
}

void RecorderState::SetVolumeName(const std::string& inName) {
    RefuseOthers();
    bool beyond = false;
    if (inName.size() > kLongestVolumeName || Utf16Units(inName, &beyond) < 0 || HasZero(inName))
        throw BurnFailure(bdNamErr, "This is no name for a volume.");
    mDisc.volumeName = inName;
    mOwner = mHost;
}

void RecorderState::SetOutputPath(const std::string& inPath) {
    RefuseOthers();
    if (!inPath.empty() && (inPath[0] != '/' || HasZero(inPath)))
        throw BurnFailure(paramErr, "\"" + inPath + "\" is not an absolute path.");
    mDisc.outputPath = inPath;
    mOwner = mHost;
}

void RecorderState::SetReplace(bool inReplace) {
    RefuseOthers();
    mDisc.replace = inReplace;
    mOwner = mHost;
}

JobEnd RecorderState::Write(const WriteOptions& inOptions) {
    RefuseOthers();
    if (mDisc.paths.empty()) throw BurnFailure(paramErr, "Nothing has been added to the disc.");
    BurnRequest request;
    request.driveId = DriveForDisc();
    request.paths = mDisc.paths;
    request.hfsPlus = mDisc.kind == kHybridDisc;
    request.verify = inOptions.verify;
    request.mayAskForDisc = inOptions.mayAskForDisc;
    request.goal = {mDisc.volumeName, mDisc.outputPath, mDisc.replace, mSimulating,
                    inOptions.eject};
    mEngine.Start(request);
    mOwner = mHost;
    mEnds.erase(mHost);
    mWriting = true;
    if (inOptions.quitAfterwards) QuitWhenDone();
    return KeepEnd();
}

JobEnd RecorderState::RequestBlankDisc() {
    RefuseOthers();
    mEngine.RequestBlankDisc(DriveForDisc(), kPatienceForBlankDisc);
    mEnds.erase(mHost);
    return KeepEnd();
}

// A request that went well is no job to tell of.
void RecorderState::ForgetRequest() {
    Settle();
    mEngine.Forget();
}

JobEnd RecorderState::KeepEnd() {
    mEnd = std::make_shared<std::optional<BurnEngine::Snapshot>>();
    return mEnd;
}

void RecorderState::Settle() {
    if (!mEnd || mEngine.Busy()) return;
    *mEnd = mEngine.Take();
    std::erase_if(mEnds, [this](const auto& end) { return !mIsAlive(end.first); });
    if (mWriting && mOwner != 0) {
        mEnds[mOwner] = **mEnd;
        mOwner = 0;
    }
    mWriting = false;
    mEnd.reset();
}

BurnEngine::Snapshot RecorderState::Job() {
    Settle();
    const auto own = mEnds.find(mHost);
    return own == mEnds.end() ? mEngine.Take() : own->second;
}

ProgressSnapshot RecorderState::Progress() {
    Settle();
    const auto own = mEnds.find(mHost);
    return own == mEnds.end() ? mEngine.Progress() : own->second.progress;
}

void RecorderState::Eject() {
    RefuseOthers();
    mEngine.Eject(ChosenDrive());
}

// Somebody has to be able to stop a job whose host has died, and a request for a blank disc, since
// its host waits for the answer.
void RecorderState::Cancel() {
    Settle();
    if (mWriting && IsOther(mOwner))
        throw BurnFailure(fBsyErr, "This is the disc of another program.");
    mEngine.Cancel();
}

void RecorderState::SetSimulating(bool inOn) {
    RefuseWhileComposed();
    mSimulating = inOn;
}

// A disc for a file comes from a drive that makes files, whatever else is chosen.
std::string RecorderState::DriveForDisc() {
    // The folder of an image drive may lie there too, in memory.
    const auto isBurner = [](const std::string& id) {
        std::error_code none;
        return id.starts_with("/dev/") && !std::filesystem::is_directory(id, none);
    };
    if (mDisc.outputPath.empty() || !isBurner(ChosenDrive())) return ChosenDrive();
    const auto all = mDrives.Identifiers();
    const auto found = std::find_if_not(all.begin(), all.end(), isBurner);
    return found == all.end() ? ChosenDrive() : *found;
}

const std::string& RecorderState::ChosenDrive() {
    if (mDriveId.empty()) mDriveId = mDrives.Identifiers().front();
    return mDriveId;
}

void RecorderState::ChooseDrive(const std::string& inIdentifier) {
    RefuseWhileComposed();  // a job that runs has its drive already
    mDrives.Open(inIdentifier);
    mDriveId = inIdentifier;
}

const DriveInfo& RecorderState::DriveNamed(const std::string& inName) {
    for (const auto& identifier : Drives()) {
        const DriveInfo& info = Drive(identifier);
        if (identifier == inName || info.name == inName) return info;
    }
    throw BurnFailure(nsDrvErr, "\"" + inName + "\" is not a drive.");
}

void RecorderState::EndSession() {
    Settle();
    mEnds.erase(mHost);
    if (mOwner == mHost) mOwner = 0;
    mSessionEnded = true;
}

void RecorderState::QuitWhenDone() {
    mQuitter = mHost;
    mQuitting = true;
}

void RecorderState::StopAndQuit() {
    mEngine.Cancel();
    mAtAnyPrice = true;
    QuitWhenDone();
}

bool RecorderState::OthersNeedUs() {
    mHost = mQuitter;
    return !mAtAnyPrice &&
           (IsOther(mOwner) || std::any_of(mEnds.begin(), mEnds.end(),
                                           [this](const auto& end) { return IsOther(end.first); }));
}

bool RecorderState::Turn() {
    Settle();
    if (!IsWaiting() || mEngine.Busy()) return false;
    if (mSessionEnded) mServerMode = false;
    mSessionEnded = false;
    return mQuitting && !OthersNeedUs();
}

}  // namespace recorder
