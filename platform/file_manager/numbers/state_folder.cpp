// Owns finding and making the folder for tables of volumes.
#include "file_manager/numbers/state_folder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace carbon {

namespace {

std::string HomeFolder() {
    if (const char* home = std::getenv("HOME"); home && home[0] == '/') return home;
    const passwd* user = getpwuid(getuid());
    return user && user->pw_dir ? user->pw_dir : "";
}

std::string StateHome() {
    const char* folder = std::getenv("XDG_STATE_HOME");
    if (folder && folder[0] == '/') return folder;
    const std::string home = HomeFolder();
    return home.empty() ? "" : home + "/.local/state";
}

void MakeFolders(const std::string& inPath) {
    for (size_t end = inPath.find('/', 1); end != std::string::npos;
         end = inPath.find('/', end + 1)) {
        mkdir(inPath.substr(0, end).c_str(), 0700);
    }
    mkdir(inPath.c_str(), 0700);
}

}  // namespace

std::string VolumesFolder() {
    const std::string home = StateHome();
    if (home.empty()) return "";
    const std::string folder = home + "/vantor/volumes";
    MakeFolders(folder);
    return folder;
}

}  // namespace carbon
