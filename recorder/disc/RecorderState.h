// Everything the recorder knows and does, without any word about events.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "burn/BurnEngine.h"
#include "disc/DiscDocument.h"

namespace recorder {

struct WriteOptions {
    bool eject = true;
    bool verify = true;
    bool mayAskForDisc = true;
    bool quitAfterwards = false;
};

// Who asks: the process serial number of a host, 0 for nobody in particular.
using HostId = UInt64;

// How a job ended, for whoever ordered it; empty while it runs.
using JobEnd = std::shared_ptr<const std::optional<BurnEngine::Snapshot>>;

// For one thread; only the engine below it is for all. What a running job makes impossible is
// refused with fBsyErr, and so is what would change the disc that another living host is putting
// together or writing, or the medium it is for.
class RecorderState {
  public:
    RecorderState(DriveSource& inDrives, std::function<bool(HostId)> inIsAlive);

    BurnEngine& Engine() { return mEngine; }
    DiscDocument& Disc() { return mDisc; }

    // Everything below is done for this host, until the next is served.
    void ServeHost(HostId inHost);

    // The drives, and what each says of itself, as found by the first question since a host is
    // served: an event may ask ten thousand times, and deserves one answer.
    const std::vector<std::string>& Drives();
    const DriveInfo& Drive(const std::string& inIdentifier);

    void MakeDisc(OSType inKind);
    void AddItems(const std::vector<std::string>& inPaths);
    void SetVolumeName(const std::string& inName);
    void SetOutputPath(const std::string& inPath);
    void SetReplace(bool inReplace);
    JobEnd Write(const WriteOptions& inOptions);

    // The job that this host sees: its own last one until it begins another disc or ends its
    // session, else whatever the engine does or did last.
    BurnEngine::Snapshot Job();
    ProgressSnapshot Progress();  // of that job

    JobEnd RequestBlankDisc();
    void ForgetRequest();
    void Eject();
    void Cancel();

    const std::string& ChosenDrive();
    void ChooseDrive(const std::string& inIdentifier);
    // By identifier or name; nsDrvErr when there is none.
    const DriveInfo& DriveNamed(const std::string& inName);

    bool ServerMode() const { return mServerMode; }
    void SetServerMode(bool inOn) { mServerMode = inOn; }
    bool Simulating() const { return mSimulating; }
    void SetSimulating(bool inOn);

    // Both wait for the end of a running job; Turn() does them. Leaving also waits for other hosts
    // that have a disc in the making or have not ended their session after one.
    void EndSession();
    void QuitWhenDone();
    void StopAndQuit();
    // To be called now and then: whether it is time to leave.
    bool Turn();
    // Whether something is waiting for the end of a job.
    bool IsWaiting() const { return mSessionEnded || mQuitting; }
    // Notes the end of a job for its host.
    void Settle();

  private:
    void RefuseWhileBusy();
    void RefuseOthers();
    void RefuseWhileComposed();
    bool IsOther(HostId inHost) const;
    bool OthersNeedUs();
    std::string DriveForDisc();
    JobEnd KeepEnd();

    DriveSource& mDrives;
    std::function<bool(HostId)> mIsAlive;
    BurnEngine mEngine;
    DiscDocument mDisc;
    std::string mDriveId;
    std::vector<std::string> mFoundDrives;  // empty: to be looked for
    std::map<std::string, DriveInfo> mFoundFacts;
    HostId mHost = 0, mOwner = 0, mQuitter = 0;  // served now; of the disc; who wants us to leave
    std::shared_ptr<std::optional<BurnEngine::Snapshot>> mEnd;  // of the running job
    bool mWriting = false;                                      // and not, say, waiting for a disc
    std::map<HostId, BurnEngine::Snapshot> mEnds;
    bool mServerMode = false, mSimulating = false, mSessionEnded = false, mQuitting = false;
    bool mAtAnyPrice = false;
};

}  // namespace recorder
