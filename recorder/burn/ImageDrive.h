// A drive that is a folder: blank image files are put into its tray, finished ones come out.
#pragma once

#include <string>

#include "burn/Drive.h"

namespace recorder {

// The folder holds:
//   tray/      the disc in the drive: the first file there by name
//   finished/  discs that have been ejected
//   settings   optional lines "blanks automatic" or "blanks manual", "kind unlimited", "kind cd",
//   "kind dvd" or "kind bd"
// An automatic drive, the default, makes blank discs of its kind itself; into a manual one somebody
// puts them. Probe() may be called from any thread.
class ImageDrive : public Drive {
  public:
    // Creates what is missing of the folder.
    explicit ImageDrive(const std::string& inFolder);

    DriveInfo Probe() override;
    bool HasBlankDisc() override;
    void Eject() override;
    std::unique_ptr<Recording> Begin(const DiscGoal& inGoal) override;

  private:
    std::string Tray() const { return mFolder + "/tray"; }
    std::string Finished() const { return mFolder + "/finished"; }
    std::string Disc() const;  // the file in the tray, or empty
    std::string BlankDisc();
    std::string MakeBlank() const;
    std::unique_ptr<Recording> Pretend(const DiscGoal& inGoal) const;
    std::string FreshPath(const std::string& inFolder, const std::string& inName) const;

    std::string mFolder;
    bool mAutomatic = true;
    UInt64 mCapacity = 0;  // of the blank discs it makes; 0 is unlimited
};

// Whether a file is a blank disc: writable, under one name only, of a known capacity, and without
// any content.
bool IsBlankDisc(const std::string& inPath);

}  // namespace recorder
