// A real burner, through libburn; any address libburn takes will do, also "stdio:/a/file". Engine
// thread only.
#pragma once

#include <string>

#include "burn/Drive.h"

namespace recorder {

// The drive is held only while something is done with it, so that other programs can use it in
// between.
class BurnerDrive : public Drive {
  public:
    explicit BurnerDrive(const std::string& inAddress) : mAddress(inAddress) {}

    DriveInfo Probe() override;
    bool HasBlankDisc() override;
    void Eject() override;
    std::unique_ptr<Recording> Begin(const DiscGoal& inGoal) override;

  private:
    std::string mAddress;
};

}  // namespace recorder
