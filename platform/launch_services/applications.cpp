// Owns the search for bundles and the memory of what it found.
#include "launch_services/applications.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <optional>

#include "file_manager/catalog/catalog.h"
#include "launch_services/registered.h"
#include "posix/across_forks.h"
#include "posix/base_folders.h"
#include "posix/folder_watch.h"

namespace carbon {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// A watch follows folders, not paths: it does not see that one further up was renamed. So what is
// remembered is compared with the disk itself from time to time, even when all is quiet.
constexpr std::chrono::seconds kTrust(1);

// What a path led to: another folder, or another set of names in it, gives another stamp.
struct Stamp {
    explicit Stamp(const std::string& inPath) {
        struct stat facts;
        if (stat(inPath.c_str(), &facts) != 0) return;
        device = facts.st_dev;
        inode = facts.st_ino;
        seconds = facts.st_mtim.tv_sec;
        nanoseconds = facts.st_mtim.tv_nsec;
    }
    bool operator==(const Stamp&) const = default;

    dev_t device = 0;
    ino_t inode = 0;
    time_t seconds = 0;
    long nanoseconds = 0;
};

// Where this code was loaded from: the folder of the library, or of a program that contains it.
fs::path OwnFolder() {
    static const char sHere = 0;
    Dl_info info = {};
    if (dladdr(&sHere, &info) == 0) return {};
    std::error_code error;
    return fs::canonical(info.dli_fname, error).parent_path();
}

void AddOnce(const fs::path& inFolder, std::vector<std::string>* ioFolders) {
    const std::string folder = inFolder.lexically_normal().string();
    if (std::find(ioFolders->begin(), ioFolders->end(), folder) == ioFolders->end())
        ioFolders->push_back(folder);
}

std::vector<std::string> SearchedFolders() {
    constexpr const char* kApplications = "share/vantor/Applications";
    std::vector<std::string> folders;
    for (const std::string& each : DataFolders()) AddOnce(each + "/vantor/Applications", &folders);
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error).parent_path();
    if (!program.empty()) {
        AddOnce(program, &folders);
        AddOnce(program.parent_path() / kApplications, &folders);
    }
    const fs::path library = OwnFolder();
    if (!library.empty()) AddOnce(library / VANTOR_PREFIX_FROM_LIBRARY / kApplications, &folders);
    return folders;
}

bool LooksLikeBundle(const fs::path& inPath) {
    std::string extension = inPath.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char each) { return char(std::tolower(each)); });
    return extension == ".app";
}

// In the order of their names, so that the answer does not depend on the file system.
std::vector<std::string> BundlesIn(const std::string& inFolder) {
    std::vector<std::string> bundles;
    std::error_code error;
    for (fs::directory_iterator item(inFolder, error), end; !error && item != end;
         item.increment(error)) {
        if (LooksLikeBundle(item->path())) bundles.push_back(item->path().string());
    }
    std::sort(bundles.begin(), bundles.end());
    return bundles;
}

class Memory {
  public:
    Memory() : mFolders(SearchedFolders()), mRegister(RegisterPath()) { Look(); }

    bool IsCurrent() {
        if (mWatch.HasChanged()) return false;
        const auto now = Clock::now();
        if (now - mChecked < kTrust) return true;
        mChecked = now;
        return CompareWithDisk();
    }

    const std::shared_ptr<const ApplicationList>& List() const { return mList; }

  private:
    void Look();
    void LookAt(const std::string& inBundle, ApplicationList* ioList);
    bool CompareWithDisk() const;
    std::vector<Stamp> Stamps() const;

    std::vector<std::string> mFolders;
    std::string mRegister;
    FolderWatch mWatch;
    std::vector<Stamp> mStamps;
    std::vector<Application> mSeen;  // also what is no application yet; without references
    Clock::time_point mChecked = Clock::now();
    std::shared_ptr<const ApplicationList> mList;
};

std::vector<Stamp> Memory::Stamps() const {
    std::vector<Stamp> stamps(mFolders.begin(), mFolders.end());
    stamps.emplace_back(mRegister);
    return stamps;
}

bool Memory::CompareWithDisk() const {
    return mStamps == Stamps() &&
           std::all_of(mSeen.begin(), mSeen.end(), [](const Application& each) {
               return FactsOfBundle(each.path) == each.facts;
           });
}

void Memory::LookAt(const std::string& inBundle, ApplicationList* ioList) {
    mWatch.Add(inBundle);
    mWatch.Add(inBundle + "/Contents");
    const auto facts = FactsOfBundle(inBundle);
    Application application = {inBundle, facts};
    mSeen.push_back(application);
    if (facts == nullptr || !IsApplication(*facts)) return;
    application.refErr = RefFromPath(inBundle, &application.ref);
    if (const CFURLRef url = UrlFromPath(inBundle, true)) application.url.reset(url, CFRelease);
    ioList->push_back(application);
}

// Watched first and looked at afterwards, so that no change falls between.
void Memory::Look() {
    ApplicationList list;
    for (const std::string& folder : mFolders) mWatch.Add(folder);
    if (!mRegister.empty()) mWatch.Add(fs::path(mRegister).parent_path().string());
    mStamps = Stamps();
    for (const std::string& folder : mFolders) {
        for (const std::string& bundle : BundlesIn(folder)) LookAt(bundle, &list);
    }
    for (const std::string& bundle : RegisteredBundles()) LookAt(bundle, &list);
    std::stable_sort(list.begin(), list.end(), [](const Application& a, const Application& b) {
        return a.facts->versionNumber > b.facts->versionNumber;
    });
    mList = std::make_shared<const ApplicationList>(std::move(list));
}

std::mutex sLock;
const HeldAcrossForks sHeld(sLock);
std::optional<Memory> sMemory;

}  // namespace

bool IsApplication(const BundleFacts& inFacts) {
    return inFacts.isPackage &&
           (inFacts.type == 'APPL' || inFacts.type == 'appe' || inFacts.type == 'FNDR');
}

std::shared_ptr<const ApplicationList> KnownApplications() {
    const std::lock_guard guard(sLock);
    if (!sMemory || !sMemory->IsCurrent()) sMemory.emplace();
    return sMemory->List();
}

void ForgetApplications() {
    const std::lock_guard guard(sLock);
    sMemory.reset();
}

}  // namespace carbon
