// The kernel's mount table, and which of its lines are volumes.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>
#include <string_view>
#include <vector>

#include "posix/UniqueFd.h"

namespace carbon {

struct Mount {
    std::string point;   // where it is mounted
    std::string root;    // which folder of the file system is seen there
    std::string type;    // "ext4"
    std::string source;  // "/dev/sda1"
    UInt64 device = 0;
    bool isReadOnly = false;
};

// The lines of a mountinfo file in their order. Lines that make no sense are left out.
std::vector<Mount> ParseMountInfo(std::string_view inText);

// The root counts always, whatever it lies on, so that every path belongs to some volume. Beside it
// storage, removable media and network file systems count, not what the kernel or the system's own
// services show as files.
bool IsVolume(const Mount& inMount);

bool IsOnNetwork(const Mount& inMount);

// Notices changes of the mount table for the price of one poll.
class MountWatch {
  public:
    // True at first and whenever the table has changed since the last call.
    bool HasChanged();
    // The table now; only the root where there is no /proc.
    std::vector<Mount> Read() const;
    // A child must not share its parent's file: each notice is given once a file.
    void Forget() { mFile.Reset(); }

  private:
    UniqueFd mFile;
};

}  // namespace carbon
