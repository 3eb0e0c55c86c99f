// A burner while we hold it. For the files of BurnerDrive.
#pragma once

#include <cstdint>
#include <string>

#include <libburn/libburn.h>

#include <Carbon/MacTypes.h>

namespace recorder {

class HeldDrive {
  public:
    // inLoad: pulls the tray in when it is open. Throws nsDrvErr, or fBsyErr when another program
    // holds it.
    HeldDrive(const std::string& inAddress, bool inLoad);
    ~HeldDrive();
    HeldDrive(const HeldDrive&) = delete;
    HeldDrive& operator=(const HeldDrive&) = delete;

    burn::burn_drive* Get() const { return mInfos[0].drive; }
    std::string Name() const;
    SInt32 MediaInfo() const;
    UInt64 Space() const;
    bool IsBlank() const;
    void Release(bool inEject);

  private:
    burn::burn_drive_info* mInfos = nullptr;
    bool mHeld = false;
};

}  // namespace recorder
