// Where the File Manager keeps what outlives a process.
#pragma once

#include <string>

namespace carbon {

// $XDG_STATE_HOME/vantor/volumes (else below ~/.local/state), made for its owner alone where it is
// missing. Empty when there is no home.
std::string VolumesFolder();

}  // namespace carbon
