// Owns image drives: what is in the tray, and where discs go.
#include "burn/ImageDrive.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <vector>

#include "burn/ImageRecording.h"
#include "burn/SourceTree.h"
#include "burn/WorkFile.h"
#include "burn/disc_names.h"

namespace recorder {
namespace {

namespace fs = std::filesystem;

struct Capacity {
    const char* kind;
    UInt64 bytes;
};
constexpr std::array<Capacity, 4> kCapacities = {{{"unlimited", 0},
                                                  {"cd", 359'844ull * 2048},
                                                  {"dvd", 2'295'104ull * 2048},
                                                  {"bd", 12'219'392ull * 2048}}};

// Where a file system does not tell holes from data, what counts is where content would begin and
// end.
bool LooksEmpty(int inFd, UInt64 inSize) {
    std::vector<char> bytes(64 * 1024);
    for (const UInt64 offset : {UInt64(0), inSize - std::min<UInt64>(inSize, bytes.size())}) {
        const ssize_t count = pread(inFd, bytes.data(), bytes.size(), off_t(offset));
        if (count < 0 ||
            std::any_of(bytes.begin(), bytes.begin() + count, [](char c) { return c != 0; }))
            return false;
    }
    return true;
}

UInt64 CapacityOfBlank(const std::string& inPath) {
    std::error_code none;
    return fs::file_size(inPath, none);
}

std::string ImageName(const std::string& inVolumeName) {
    std::string name = inVolumeName;
    std::replace(name.begin(), name.end(), '/', ':');
    if (name[0] == '.') name[0] = '_';
    return CutName(name, 200);
}

}  // namespace

bool IsBlankDisc(const std::string& inPath) {
    const carbon::UniqueFd fd(open(inPath.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat facts = {};
    if (!fd || fstat(fd.Get(), &facts) != 0 || !S_ISREG(facts.st_mode) || facts.st_nlink != 1)
        return false;
    const UInt64 size = UInt64(facts.st_size);
    if (std::none_of(kCapacities.begin(), kCapacities.end(),
                     [&](const auto& c) { return c.bytes == size; }))
        return false;
    if (size == 0) return true;
    const off_t data = lseek(fd.Get(), 0, SEEK_DATA);
    return (data < 0 && errno == ENXIO) || (data == 0 && LooksEmpty(fd.Get(), size));
}

ImageDrive::ImageDrive(const std::string& inFolder) : mFolder(inFolder) {
    std::error_code error;
    fs::create_directories(Tray(), error);
    if (!error) fs::create_directories(Finished(), error);
    if (error) throw FailureFromErrno(error.value(), mFolder);
    std::ifstream settings(mFolder + "/settings");
    for (std::string key, value; settings >> key >> value;) {
        if (key == "blanks") mAutomatic = value != "manual";
        for (const auto& capacity : kCapacities)
            if (key == "kind" && value == capacity.kind) mCapacity = capacity.bytes;
    }
}

std::string ImageDrive::Disc() const {
    std::vector<std::string> names;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(Tray(), none))
        if (entry.is_regular_file(none) && entry.path().filename().string()[0] != '.')
            names.push_back(entry.path());
    return names.empty() ? std::string() : *std::min_element(names.begin(), names.end());
}

DriveInfo ImageDrive::Probe() {
    DriveInfo info{mFolder, LeafName(mFolder) + " (image drive)", false, 0, FreeSpace(Finished())};
    const std::string disc = Disc();
    if (disc.empty()) {
        if (!mAutomatic) info.space = 0;
        return info;
    }
    const bool blank = IsBlankDisc(disc);
    info.mediaInfo = kMediumImage | (blank ? kMediumBlank : 0);
    const UInt64 capacity = blank ? CapacityOfBlank(disc) : 0;
    if (!blank && !mAutomatic) info.space = 0;
    if (capacity != 0) info.space = std::min(info.space, capacity);
    return info;
}

std::string ImageDrive::FreshPath(const std::string& inFolder, const std::string& inName) const {
    const fs::path name(inName);
    std::string path = inFolder + "/" + inName;
    for (int number = 2; fs::exists(fs::symlink_status(path)); ++number)
        path = inFolder + "/" + name.stem().string() + " " + std::to_string(number) +
               name.extension().string();
    return path;
}

std::string ImageDrive::MakeBlank() const {
    const std::string path = Tray() + "/Blank disc.iso";
    const carbon::UniqueFd fd(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (!fd) throw FailureFromErrno(errno, path);
    if (ftruncate(fd.Get(), off_t(mCapacity)) == 0) return path;
    const BurnFailure failure = FailureFromErrno(errno, path);
    unlink(path.c_str());
    throw failure;
}

// The disc to be written, or empty. An automatic drive clears its tray for one: whatever else lies
// there by name before it would be taken for it.
std::string ImageDrive::BlankDisc() {
    std::string disc = Disc();
    for (; mAutomatic && !disc.empty() && !IsBlankDisc(disc); disc = Disc()) Eject();
    if (!disc.empty()) return IsBlankDisc(disc) ? disc : std::string();
    return mAutomatic ? MakeBlank() : std::string();
}

bool ImageDrive::HasBlankDisc() {
    return !BlankDisc().empty();
}

void ImageDrive::Eject() {
    const std::string disc = Disc();
    if (disc.empty()) return;
    if (mAutomatic && IsBlankDisc(disc)) {  // it made it itself and makes another when needed
        if (unlink(disc.c_str()) != 0) throw FailureFromErrno(errno, disc);
        return;
    }
    const std::string path = FreshPath(Finished(), LeafName(disc));
    if (rename(disc.c_str(), path.c_str()) != 0) throw FailureFromErrno(errno, disc);
}

std::unique_ptr<Recording> ImageDrive::Pretend(const DiscGoal& inGoal) const {
    if (!inGoal.outputPath.empty()) WorkFile::CheckGoal(inGoal.outputPath, inGoal.replace);
    const std::string folder = inGoal.outputPath.empty() ? Finished() : FolderOf(inGoal.outputPath);
    const std::string disc = Disc();
    const bool isBlank = !disc.empty() && IsBlankDisc(disc);
    return std::make_unique<SimulatedRecording>(folder,
                                                isBlank ? CapacityOfBlank(disc) : mCapacity);
}

std::unique_ptr<Recording> ImageDrive::Begin(const DiscGoal& inGoal) {
    if (inGoal.simulate) return Pretend(inGoal);
    // Before the tray is touched.
    if (!inGoal.outputPath.empty()) WorkFile::CheckGoal(inGoal.outputPath, inGoal.replace);
    const std::string blank = BlankDisc();
    if (blank.empty()) throw BurnFailure(kNoDiscErr, "There is no blank disc in " + mFolder + ".");
    std::string goal = inGoal.outputPath;
    if (goal.empty())
        goal = FreshPath(inGoal.eject ? Finished() : Tray(), ImageName(inGoal.volumeName) + ".iso");
    return std::make_unique<ImageRecording>(ImageRecording::Places{blank, goal}, inGoal.replace,
                                            CapacityOfBlank(blank));
}

}  // namespace recorder
