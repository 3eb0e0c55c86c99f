// Owns the reading of /proc/self/mountinfo and the judgement which mounts a user works on.
#include "file_manager/volumes/mounts.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>

namespace carbon {

namespace {

constexpr const char* kMountInfo = "/proc/self/mountinfo";

// File systems that hold no user's files, and images that the system mounts for itself.
constexpr std::array<std::string_view, 36> kSystemTypes = {
    "autofs",     "binder",     "binfmt_misc", "bpf",           "cgroup",
    "cgroup2",    "configfs",   "debugfs",     "devpts",        "devtmpfs",
    "efivarfs",   "functionfs", "fusectl",     "hugetlbfs",     "mqueue",
    "nfsd",       "nsfs",       "overlay",     "pipefs",        "proc",
    "pstore",     "ramfs",      "resctrl",     "rootfs",        "rpc_pipefs",
    "securityfs", "selinuxfs",  "smackfs",     "squashfs",      "sysfs",
    "tracefs",    "fuse.lxcfs", "fuse.portal", "fuse.snapfuse", "fuse.gvfsd-fuse",
    "erofs"};

constexpr std::array<std::string_view, 17> kNetworkTypes = {
    "9p",     "afs",        "beegfs",      "ceph",        "cifs",      "coda",
    "davfs",  "fuse.davfs", "fuse.davfs2", "fuse.rclone", "fuse.s3fs", "fuse.sshfs",
    "lustre", "ncpfs",      "nfs",         "nfs4",        "smb3"};

template <size_t N>
bool Contains(const std::array<std::string_view, N>& inList, std::string_view inType) {
    return std::find(inList.begin(), inList.end(), inType) != inList.end();
}

bool IsBelow(const std::string& inPath, std::string_view inFolder) {
    return inPath.starts_with(inFolder) &&
           (inPath.size() == inFolder.size() || inPath[inFolder.size()] == '/');
}

// Memory is a user's where it is mounted for files, not where the system keeps its own state.
bool IsSystemMemory(const Mount& inMount) {
    if (inMount.type != "tmpfs" && inMount.type != "devtmpfs") return false;
    if (IsBelow(inMount.point, "/run/media")) return false;
    return IsBelow(inMount.point, "/dev") || IsBelow(inMount.point, "/run") ||
           IsBelow(inMount.point, "/proc") || IsBelow(inMount.point, "/sys") ||
           IsBelow(inMount.point, "/var/run") || inMount.isReadOnly;
}

// The kernel writes blanks, tabs, line ends and backslashes as \ and three octal digits.
std::string Unescaped(std::string_view inText) {
    std::string text;
    for (size_t i = 0; i < inText.size(); ++i) {
        unsigned code = 0;
        const char* first = inText.data() + i + 1;
        if (inText[i] == '\\' && i + 3 < inText.size() &&
            std::from_chars(first, first + 3, code, 8).ptr == first + 3 && code < 256) {
            text += char(code);
            i += 3;
        } else {
            text += inText[i];
        }
    }
    return text;
}

std::vector<std::string_view> Split(std::string_view inText, char inSeparator) {
    std::vector<std::string_view> parts;
    while (!inText.empty()) {
        const auto end = std::min(inText.find(inSeparator), inText.size());
        if (end > 0) parts.push_back(inText.substr(0, end));
        inText.remove_prefix(std::min(end + 1, inText.size()));
    }
    return parts;
}

UInt64 DeviceOf(std::string_view inNumbers) {
    unsigned numbers[2] = {0, 0};
    const auto parts = Split(inNumbers, ':');
    for (size_t i = 0; i < 2 && i < parts.size(); ++i) {
        std::from_chars(parts[i].data(), parts[i].data() + parts[i].size(), numbers[i]);
    }
    return makedev(numbers[0], numbers[1]);
}

bool HasOption(std::string_view inOptions, std::string_view inOption) {
    const auto options = Split(inOptions, ',');
    return std::find(options.begin(), options.end(), inOption) != options.end();
}

// ID, parent's ID, device, root, mount point, options, any number of tags, "-", type, source,
// options of the file system.
std::optional<Mount> ParseLine(std::string_view inLine) {
    const auto fields = Split(inLine, ' ');
    const auto dash = std::find(fields.begin(), fields.end(), "-");
    if (dash - fields.begin() < 6 || fields.end() - dash < 3) return std::nullopt;
    Mount mount;
    mount.device = DeviceOf(fields[2]);
    mount.root = Unescaped(fields[3]);
    mount.point = Unescaped(fields[4]);
    mount.type = Unescaped(dash[1]);
    mount.source = Unescaped(dash[2]);
    mount.isReadOnly =
        HasOption(fields[5], "ro") || (fields.end() - dash > 3 && HasOption(dash[3], "ro"));
    if (!mount.point.starts_with('/')) return std::nullopt;
    return mount;
}

}  // namespace

std::vector<Mount> ParseMountInfo(std::string_view inText) {
    std::vector<Mount> mounts;
    for (const auto line : Split(inText, '\n')) {
        if (auto mount = ParseLine(line)) mounts.push_back(std::move(*mount));
    }
    return mounts;
}

bool IsVolume(const Mount& inMount) {
    if (inMount.point == "/") return true;
    return !Contains(kSystemTypes, inMount.type) && !IsSystemMemory(inMount);
}

bool IsOnNetwork(const Mount& inMount) {
    return Contains(kNetworkTypes, inMount.type);
}

bool MountWatch::HasChanged() {
    pollfd watched = {mFile.Get(), POLLPRI, 0};
    if (mFile && poll(&watched, 1, 0) >= 0 && !(watched.revents & POLLNVAL)) {
        return watched.revents != 0;
    }
    mFile.Reset(open(kMountInfo, O_RDONLY | O_CLOEXEC));
    return true;
}

std::vector<Mount> MountWatch::Read() const {
    std::ifstream file(kMountInfo);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    auto mounts = ParseMountInfo(text);
    const auto isRoot = [](const Mount& inMount) { return inMount.point == "/"; };
    if (std::none_of(mounts.begin(), mounts.end(), isRoot)) {
        mounts.insert(mounts.begin(), Mount{"/", "/", "rootfs", "rootfs", 0, false});
    }
    return mounts;
}

}  // namespace carbon
