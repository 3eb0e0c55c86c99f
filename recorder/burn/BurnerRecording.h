// One disc being written by a burner.
#pragma once

#include "burn/Drive.h"
#include "burn/HeldDrive.h"

namespace recorder {

class BurnerRecording : public Recording {
  public:
    BurnerRecording(const std::string& inAddress, const DiscGoal& inGoal);

    void Reserve(UInt64 inBytes) override;
    void Write(ImageStream& inStream, const JobContext& inContext) override;
    void PrepareReadBack() override;
    void ReadBack(UInt64 inOffset, UInt8* outData, size_t inSize) override;
    std::string Finish() override;

  private:
    int TailBytes() const;
    void WaitUntilIdle(const JobContext& inContext);

    HeldDrive mDrive;
    DiscGoal mGoal;
};

}  // namespace recorder
