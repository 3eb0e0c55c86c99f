// Owns reading the variables of the XDG base directory rules.
#include "posix/base_folders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace carbon {
namespace {

namespace fs = std::filesystem;

std::string Variable(const char* inName) {
    const char* value = std::getenv(inName);
    return value == nullptr ? std::string() : value;
}

std::string BelowHome(const std::string& inPath) {
    std::string home = Variable("HOME");
    const passwd* user = home.empty() ? getpwuid(getuid()) : nullptr;
    if (user != nullptr && user->pw_dir != nullptr) home = user->pw_dir;
    return home.empty() ? std::string() : home + "/" + inPath;
}

bool IsAbsolute(const std::string& inPath) {
    return !inPath.empty() && inPath[0] == '/';
}

std::string Folder(const char* inVariable, const std::string& inBelowHome) {
    const std::string value = Variable(inVariable);
    return IsAbsolute(value) ? value : BelowHome(inBelowHome);
}

}  // namespace

std::string StateFolder() {
    const std::string state = Folder("XDG_STATE_HOME", ".local/state");
    if (state.empty()) return {};
    const fs::path folder = fs::path(state) / "vantor";
    std::error_code error;
    // Whoever writes there meets the error again and reports it.
    if (fs::create_directories(folder, error)) fs::permissions(folder, fs::perms::owner_all, error);
    return folder.string();
}

std::vector<std::string> DataFolders() {
    std::vector<std::string> folders = {Folder("XDG_DATA_HOME", ".local/share")};
    std::string others = Variable("XDG_DATA_DIRS");
    if (others.empty()) others = "/usr/local/share:/usr/share";
    std::istringstream list(others);
    for (std::string each; std::getline(list, each, ':');) folders.push_back(each);
    std::erase_if(folders, [](const std::string& each) { return !IsAbsolute(each); });
    return folders;
}

}  // namespace carbon
