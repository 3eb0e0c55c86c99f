// One disc from a list of files to a verified medium. Engine thread only.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "burn/Drive.h"

namespace recorder {

struct BurnRequest {
    std::string driveId;
    std::vector<std::string> paths;  // absolute, files and folders
    bool hfsPlus = false;
    bool verify = true;
    bool mayAskForDisc = true;  // false: fails with kNoDiscErr instead of waiting for one
    DiscGoal goal;              // an empty volume name becomes that of the first item
};

// What a job leaves to know.
struct BurnResult {
    std::vector<std::string> report;  // complete before anything is written
    SInt32 nodes = 0;                 // files, folders and links on the disc
    bool verified = false;
    bool simulated = false;
    std::string path;  // of the finished image
};

class BurnJob {
  public:
    // `inPlanned` is called once, when the report is complete and nothing has been written.
    BurnJob(Drive& inDrive, const BurnRequest& inRequest, const JobContext& inContext,
            std::function<void(const BurnResult&)> inPlanned);

    // Throws BurnFailure; then nothing is left behind.
    BurnResult Run();

  private:
    SourceTree Plan();
    void WaitForDisc();
    void Write(Recording& inRecording, ImageStream& inStream, const SourceWatcher& inWatcher);
    void Verify(Recording& inRecording, UInt64 inSize);

    Drive& mDrive;
    BurnRequest mRequest;
    const JobContext& mContext;
    std::function<void(const BurnResult&)> mPlanned;
    BurnResult mResult;
    class BlockSums* mSums = nullptr;
};

// Waits until the drive has a blank disc; throws BurnCancelled, or kNoDiscErr when inSeconds have
// passed.
void WaitForBlankDisc(Drive& inDrive, const JobContext& inContext, int inSeconds);

}  // namespace recorder
