// The user's folders as the XDG base directory rules place them.
#pragma once

#include <string>
#include <vector>

namespace carbon {

// $XDG_STATE_HOME/vantor or ~/.local/state/vantor, made for its owner alone where it is missing.
// Empty when there is no home.
std::string StateFolder();

// $XDG_DATA_HOME (else ~/.local/share), then $XDG_DATA_DIRS (else /usr/local/share and /usr/share),
// in the order in which they are to be searched. Relative ones are left out.
std::vector<std::string> DataFolders();

}  // namespace carbon
