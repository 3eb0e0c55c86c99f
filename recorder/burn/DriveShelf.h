// The drives there are, and which one is chosen.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "burn/Drive.h"

namespace recorder {

// Where drives come from. The real one is below; tests bring their own.
class DriveSource {
  public:
    virtual ~DriveSource() = default;
    // Identifiers, burners first. Any thread.
    virtual std::vector<std::string> Identifiers() = 0;
    // Throws nsDrvErr when there is no such drive. Any thread; what it returns is for the engine
    // thread.
    virtual std::unique_ptr<Drive> Open(const std::string& inIdentifier) = 0;
};

// Burners the user may open, then the image drives: the folders in `$XDG_DATA_HOME/vantor/drives`,
// by name; without any, one called "image" is made there. An image drive elsewhere may be opened by
// its absolute path when it has a folder `tray`.
class SystemDrives : public DriveSource {
  public:
    SystemDrives();
    std::vector<std::string> Identifiers() override;
    std::unique_ptr<Drive> Open(const std::string& inIdentifier) override;

  private:
    std::string mFolder;
};

}  // namespace recorder
