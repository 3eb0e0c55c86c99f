// Owns the rules of what may be done when.
#include "disc/RecorderState.h"

#include "burn/BurnFailure.h"
#include "burn/disc_names.h"

namespace recorder {
namespace {

constexpr int kPatienceForBlankDisc = 600;  // seconds
constexpr size_t kLongestVolumeName = 255;

}  // namespace

RecorderState::RecorderState(DriveSource& inDrives) : mDrives(inDrives), mEngine(inDrives) {}

void RecorderState::RefuseWhileBusy() {
    if (mEngine.Busy()) throw BurnFailure(fBsyErr, "A disc is being written.");
}

void RecorderState::MakeDisc(OSType inKind) {
    RefuseWhileBusy();
    mDisc = MakeDocument(inKind);
    mEngine.Forget();
    mEngine.Measure({});
}

void RecorderState::AddItems(const std::vector<std::string>& inPaths) {
    RefuseWhileBusy();
    mDisc.Add(inPaths);
    mEngine.Measure(mDisc.paths);
}

void RecorderState::SetVolumeName(const std::string& inName) {
    RefuseWhileBusy();
    bool beyond = false;
    if (inName.size() > kLongestVolumeName || Utf16Units(inName, &beyond) < 0)
        throw BurnFailure(bdNamErr, "This is no name for a volume.");
    mDisc.volumeName = inName;
}

void RecorderState::SetOutputPath(const std::string& inPath) {
    RefuseWhileBusy();
    if (!inPath.empty() && inPath[0] != '/')
        throw BurnFailure(paramErr, "\"" + inPath + "\" is not an absolute path.");
    mDisc.outputPath = inPath;
}

void RecorderState::SetReplace(bool inReplace) {
    RefuseWhileBusy();
    mDisc.replace = inReplace;
}

void RecorderState::Write(const WriteOptions& inOptions) {
    RefuseWhileBusy();
    if (mDisc.paths.empty()) throw BurnFailure(paramErr, "Nothing has been added to the disc.");
    BurnRequest request;
    request.driveId = ChosenDrive();
    request.paths = mDisc.paths;
    request.hfsPlus = mDisc.kind == kHybridDisc;
    request.verify = inOptions.verify;
    request.mayAskForDisc = inOptions.mayAskForDisc;
    request.goal = {mDisc.volumeName, mDisc.outputPath, mDisc.replace, mSimulating,
                    inOptions.eject};
    mEngine.Start(request);
    if (inOptions.quitAfterwards) QuitWhenDone();
}

void RecorderState::RequestBlankDisc() {
    mEngine.RequestBlankDisc(ChosenDrive(), kPatienceForBlankDisc);
}

void RecorderState::Eject() {
    RefuseWhileBusy();
    mEngine.Eject(ChosenDrive());
}

const std::string& RecorderState::ChosenDrive() {
    if (mDriveId.empty()) mDriveId = mDrives.Identifiers().front();
    return mDriveId;
}

void RecorderState::ChooseDrive(const std::string& inIdentifier) {
    RefuseWhileBusy();
    mDrives.Open(inIdentifier);
    mDriveId = inIdentifier;
}

DriveInfo RecorderState::DriveAt(SInt32 inPosition) {
    const auto identifiers = mDrives.Identifiers();
    const SInt32 count = SInt32(identifiers.size());
    const SInt32 position = inPosition < 0 ? count + 1 + inPosition : inPosition;
    if (position < 1 || position > count) throw BurnFailure(nsDrvErr, "There is no such drive.");
    return mEngine.Probe(identifiers[size_t(position - 1)]);
}

DriveInfo RecorderState::DriveNamed(const std::string& inName) {
    for (const auto& identifier : mDrives.Identifiers()) {
        const DriveInfo info = mEngine.Probe(identifier);
        if (identifier == inName || info.name == inName) return info;
    }
    throw BurnFailure(nsDrvErr, "\"" + inName + "\" is not a drive.");
}

void RecorderState::StopAndQuit() {
    mEngine.Cancel();
    QuitWhenDone();
}

bool RecorderState::Turn() {
    if (!IsWaiting() || mEngine.Busy()) return false;
    if (mSessionEnded) mServerMode = false;
    mSessionEnded = false;
    return mQuitting;
}

}  // namespace recorder
