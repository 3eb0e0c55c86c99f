// Owns the register's file: one path a line, a line end within a path written as \n.
#include "launch_services/registered.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>

#include "posix/UniqueFd.h"
#include "posix/base_folders.h"
#include "posix/file_lock.h"
#include "posix/os_err.h"

namespace carbon {
namespace {

constexpr std::chrono::seconds kPatience(5);

std::string Escaped(const std::string& inPath) {
    std::string line;
    for (const char each : inPath) {
        if (each == '\n')
            line += "\\n";
        else if (each == '\\')
            line += "\\\\";
        else
            line += each;
    }
    return line + "\n";
}

std::string Unescaped(const std::string& inLine) {
    std::string path;
    for (std::size_t at = 0; at < inLine.size(); ++at) {
        const bool escape = inLine[at] == '\\' && at + 1 < inLine.size();
        if (escape) ++at;
        path += escape && inLine[at] == 'n' ? '\n' : inLine[at];
    }
    return path;
}

bool WriteAll(int inFile, const std::string& inText) {
    std::size_t done = 0;
    while (done < inText.size()) {
        const ssize_t size = write(inFile, inText.data() + done, inText.size() - done);
        if (size < 0 && errno != EINTR) return false;
        if (size > 0) done += std::size_t(size);
    }
    return fsync(inFile) == 0;
}

// Readers see the old register or the new one, whatever happens on the way.
OSErr Replace(const std::string& inPath, const std::string& inText) {
    const std::string draft = inPath + ".new";
    const UniqueFd file(open(draft.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    const bool written = file && WriteAll(file.Get(), inText);
    if (written && rename(draft.c_str(), inPath.c_str()) == 0) return noErr;
    const OSErr err = OSErrFromErrno(errno);
    unlink(draft.c_str());
    return err;
}

}  // namespace

std::string RegisterPath() {
    const std::string folder = StateFolder();
    return folder.empty() ? std::string() : folder + "/applications";
}

std::vector<std::string> RegisteredBundles() {
    std::vector<std::string> bundles;
    std::ifstream file(RegisterPath());
    for (std::string line; std::getline(file, line);) bundles.push_back(Unescaped(line));
    return bundles;
}

OSErr AddRegisteredBundle(const std::string& inPath) {
    const std::string path = RegisterPath();
    if (path.empty()) return dirNFErr;
    const FileLock lock(path + ".lock", kPatience);
    if (!lock.IsHeld()) return wrPermErr;
    std::vector<std::string> bundles = RegisteredBundles();
    if (std::find(bundles.begin(), bundles.end(), inPath) != bundles.end()) return noErr;
    bundles.push_back(inPath);
    std::string text;
    for (const std::string& each : bundles) text += Escaped(each);
    return Replace(path, text);
}

}  // namespace carbon
