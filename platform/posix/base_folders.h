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

// $HOME, else what the system's list of users says. Empty when there is none.
std::string HomeFolder();
// $XDG_CONFIG_HOME or ~/.config, $XDG_CACHE_HOME or ~/.cache; not made.
std::string ConfigFolder();
std::string CacheFolder();

// The user's folder of one kind ("DESKTOP", "DOCUMENTS") as user-dirs.dirs says, else the folder
// `inDefault` in the home.
std::string UserFolder(const std::string& inKind, const std::string& inDefault);

}  // namespace carbon
