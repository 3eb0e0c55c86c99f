// Owns the search for drives. Burners are found in what the kernel says about them: asking each
// drive would disturb those that are busy, and libburn cannot look for drives while it holds one.
#include "burn/DriveShelf.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "burn/BurnerDrive.h"
#include "burn/ImageDrive.h"
#include "burn/disc_names.h"

namespace recorder {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> Words(const std::string& inLine) {
    std::istringstream words(inLine.substr(std::min(inLine.size(), inLine.find(':') + 1)));
    std::vector<std::string> result;
    for (std::string word; words >> word;) result.push_back(word);
    return result;
}

// The kernel's table has a column for each drive; one that writes CD-R or DVD-R is a burner.
std::vector<std::string> Burners() {
    std::ifstream table("/proc/sys/dev/cdrom/info");
    std::vector<std::string> names, burners;
    for (std::string line; std::getline(table, line);) {
        if (line.starts_with("drive name:")) names = Words(line);
        if (!line.starts_with("Can write CD-R:") && !line.starts_with("Can write DVD-R:")) continue;
        const auto able = Words(line);
        for (size_t i = 0; i < std::min(able.size(), names.size()); ++i) {
            const std::string device = "/dev/" + names[i];
            if (able[i] == "1" && access(device.c_str(), R_OK | W_OK) == 0)
                burners.push_back(device);
        }
    }
    std::sort(burners.begin(), burners.end());
    burners.erase(std::unique(burners.begin(), burners.end()), burners.end());
    return burners;
}

std::vector<std::string> Folders(const fs::path& inParent) {
    std::vector<std::string> folders;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(inParent, none))
        if (entry.is_directory(none)) folders.push_back(entry.path());
    std::sort(folders.begin(), folders.end());
    return folders;
}

}  // namespace

SystemDrives::SystemDrives() {
    const char* data = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    const fs::path base = data != nullptr && *data == '/'
                              ? fs::path(data)
                              : fs::path(home ? home : "/tmp") / ".local/share";
    mFolder = base / "vantor/drives";
}

std::vector<std::string> SystemDrives::Identifiers() {
    std::vector<std::string> identifiers = Burners();
    std::vector<std::string> folders = Folders(mFolder);
    if (folders.empty()) folders.push_back(mFolder + "/image");
    identifiers.insert(identifiers.end(), folders.begin(), folders.end());
    return identifiers;
}

std::unique_ptr<Drive> SystemDrives::Open(const std::string& inIdentifier) {
    const auto known = Identifiers();
    const bool isKnown = std::find(known.begin(), known.end(), inIdentifier) != known.end();
    std::error_code none;
    const bool isPath = inIdentifier.starts_with("/") && !HasZero(inIdentifier);
    if (inIdentifier.starts_with("/dev/") && isPath && fs::is_block_file(inIdentifier, none))
        return std::make_unique<BurnerDrive>(inIdentifier);
    if (isPath && (isKnown || fs::is_directory(inIdentifier + "/tray", none)))
        return std::make_unique<ImageDrive>(inIdentifier);
    throw BurnFailure(nsDrvErr, "\"" + inIdentifier + "\" is not a drive.");
}

}  // namespace recorder
