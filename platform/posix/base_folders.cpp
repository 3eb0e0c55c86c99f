// Owns reading the variables of the XDG base directory rules.
#include "posix/base_folders.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

namespace carbon {
namespace {

namespace fs = std::filesystem;

std::string Variable(const char* inName) {
    const char* value = std::getenv(inName);
    return value == nullptr ? std::string() : value;
}

std::string BelowHome(const std::string& inPath) {
    const std::string home = HomeFolder();
    return home.empty() ? std::string() : home + "/" + inPath;
}

bool IsAbsolute(const std::string& inPath) {
    return !inPath.empty() && inPath[0] == '/';
}

std::string Folder(const char* inVariable, const std::string& inBelowHome) {
    const std::string value = Variable(inVariable);
    return IsAbsolute(value) ? value : BelowHome(inBelowHome);
}

// A line of user-dirs.dirs: XDG_DESKTOP_DIR="$HOME/Desktop". The rules allow an absolute path or
// one below the home, nothing else.
std::string FolderInLine(const std::string& inLine, const std::string& inKind) {
    const std::string start = "XDG_" + inKind + "_DIR=\"";
    if (!inLine.starts_with(start) || !inLine.ends_with('"')) return {};
    const std::string value = inLine.substr(start.size(), inLine.size() - start.size() - 1);
    constexpr std::string_view kHome = "$HOME/";
    if (value.starts_with(kHome)) return BelowHome(value.substr(kHome.size()));
    return IsAbsolute(value) ? value : std::string();
}

}  // namespace

std::string HomeFolder() {
    std::string home = Variable("HOME");
    const passwd* user = home.empty() ? getpwuid(getuid()) : nullptr;
    if (user != nullptr && user->pw_dir != nullptr) home = user->pw_dir;
    return home;
}

std::string ConfigFolder() {
    return Folder("XDG_CONFIG_HOME", ".config");
}

std::string CacheFolder() {
    return Folder("XDG_CACHE_HOME", ".cache");
}

std::string UserFolder(const std::string& inKind, const std::string& inDefault) {
    std::ifstream file(ConfigFolder() + "/user-dirs.dirs");
    for (std::string line; std::getline(file, line);) {
        if (auto folder = FolderInLine(line, inKind); !folder.empty()) return folder;
    }
    return BelowHome(inDefault);
}

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
