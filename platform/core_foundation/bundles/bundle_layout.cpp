// The three generations of bundles, and flat folders.
#include "core_foundation/bundles/bundle_layout.h"

#include <dirent.h>
#include <strings.h>
#include <sys/stat.h>

#include <memory>

namespace carbon {

namespace {

constexpr const char* kModern = "/Contents";
constexpr const char* kOld = "/Support Files";
constexpr const char* kOldest = "/Resources";

std::string LastName(const std::string& inPath) {
    return inPath.substr(inPath.rfind('/') + 1);
}

size_t PeriodOf(const std::string& inName) {
    const size_t period = inName.rfind('.');
    return period == 0 ? inName.npos : period;
}

struct CloseFolder {
    void operator()(DIR* inFolder) const { closedir(inFolder); }
};

// A file by its name, else one whose name differs in case only; empty when there is neither.
std::string FindWithoutCase(const std::string& inFolder, const char* inName) {
    const std::string exact = inFolder + "/" + inName;
    if (IsPlainFile(exact)) return exact;
    const std::unique_ptr<DIR, CloseFolder> folder(opendir(inFolder.c_str()));
    if (!folder) return {};
    while (const dirent* entry = readdir(folder.get())) {
        const std::string path = inFolder + "/" + entry->d_name;
        if (strcasecmp(entry->d_name, inName) == 0 && IsPlainFile(path)) return path;
    }
    return {};
}

std::string FindPackageFile(const std::string& inPath) {
    for (const char* folder : {kModern, kOld, ""}) {
        const std::string file = inPath + folder + "/PkgInfo";
        if (IsPlainFile(file)) return file;
    }
    return {};
}

// The folder that makes this a bundle, and of which generation; empty for a flat one.
std::string SupportFolder(const std::string& inPath) {
    if (ExtensionOfBundle(inPath) == ".framework" && IsFolder(inPath + kOldest)) return kOldest;
    for (const char* folder : {kModern, kOld, kOldest}) {
        if (IsFolder(inPath + folder)) return folder;
    }
    return {};
}

}  // namespace

bool IsFolder(const std::string& inPath) {
    struct stat info;
    return stat(inPath.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool IsPlainFile(const std::string& inPath) {
    struct stat info;
    return stat(inPath.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

BundleLayout LayoutOfBundle(const std::string& inPath) {
    const std::string folder = SupportFolder(inPath);
    BundleLayout layout;
    layout.isBundle = !folder.empty();
    layout.support = inPath + folder;
    if (folder.empty()) {
        layout.resources = inPath;
    } else {
        layout.resources = folder == kModern ? layout.support + kOldest : inPath + kOldest;
    }
    layout.infoFile = FindWithoutCase(layout.support, "Info.plist");
    layout.packageFile = FindPackageFile(inPath);
    return layout;
}

std::string ExecutableOfBundle(const std::string& inPath, const std::string& inName) {
    if (inName.empty() || inName.find('/') != inName.npos) return {};
    for (const char* folder : {"/Contents/Linux/", "/Contents/MacOS/", "/"}) {
        std::string file = inPath + folder + inName;
        if (IsPlainFile(file)) return file;
    }
    return {};
}

std::string NameOfBundle(const std::string& inPath) {
    const std::string name = LastName(inPath);
    return name.substr(0, PeriodOf(name));
}

std::string ExtensionOfBundle(const std::string& inPath) {
    const std::string name = LastName(inPath);
    const size_t period = PeriodOf(name);
    return period == name.npos ? std::string() : name.substr(period);
}

std::vector<std::string> FoldersOfBundle(const std::string& inPath) {
    return {inPath,           inPath + kModern,           inPath + kOld,
            inPath + kOldest, inPath + "/Contents/Linux", inPath + "/Contents/MacOS"};
}

}  // namespace carbon
