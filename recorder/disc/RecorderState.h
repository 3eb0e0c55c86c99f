// Everything the recorder knows and does, without any word about events.
#pragma once

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

// For one thread; only the engine below it is for all. What a running job makes impossible is
// refused with fBsyErr.
class RecorderState {
  public:
    explicit RecorderState(DriveSource& inDrives);

    BurnEngine& Engine() { return mEngine; }
    DiscDocument& Disc() { return mDisc; }

    void MakeDisc(OSType inKind);
    void AddItems(const std::vector<std::string>& inPaths);
    void SetVolumeName(const std::string& inName);
    void SetOutputPath(const std::string& inPath);
    void SetReplace(bool inReplace);
    void Write(const WriteOptions& inOptions);

    void RequestBlankDisc();
    void Eject();

    const std::string& ChosenDrive();
    void ChooseDrive(const std::string& inIdentifier);
    // By position, from 1, or by identifier or name; nsDrvErr when there is none.
    DriveInfo DriveAt(SInt32 inPosition);
    DriveInfo DriveNamed(const std::string& inName);

    bool ServerMode() const { return mServerMode; }
    void SetServerMode(bool inOn) { mServerMode = inOn; }
    bool Simulating() const { return mSimulating; }
    void SetSimulating(bool inOn) { mSimulating = inOn; }

    // Both wait for the end of a running job; Turn() does them.
    void EndSession() { mSessionEnded = true; }
    void QuitWhenDone() { mQuitting = true; }
    void StopAndQuit();
    // To be called now and then: whether it is time to leave.
    bool Turn();
    // Whether something is waiting for the end of a job.
    bool IsWaiting() const { return mSessionEnded || mQuitting; }

  private:
    void RefuseWhileBusy();

    DriveSource& mDrives;
    BurnEngine mEngine;
    DiscDocument mDisc;
    std::string mDriveId;
    bool mServerMode = false, mSimulating = false, mSessionEnded = false, mQuitting = false;
};

}  // namespace recorder
