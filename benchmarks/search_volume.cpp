// Searching a volume for its files, through the index and walking, beside plain walks over the same
// folders. One iteration is one search over the whole tree; each prints its fastest,
// which says most on a busy machine.
//   search_volume FOLDER FILES [ROUNDS]
// makes a tree of so many files, 50 in a folder, each with type and creator in an attribute of 32
// bytes, one in a thousand with "report" in its name, and ten of a type of their own.
#include <Carbon/Carbon.h>
#include <Platform/Platform.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "vantor/files/CatalogSearch.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFilesInAFolder = 50;
constexpr int kFoldersInAFolder = 20;
constexpr int kWanted = 10;
constexpr const char* kAttribute = "user.com.apple.FinderInfo";
constexpr OSType kCreator = 'Fv8k', kType = 'APPL';

[[noreturn]] void Fail(const std::string& inWhat) {
    std::fprintf(stderr, "search_volume: %s\n", inWhat.c_str());
    std::exit(1);
}

std::string FolderOf(const std::string& inRoot, int inFolder) {
    return inFolder == 0 ? inRoot
                         : FolderOf(inRoot, (inFolder - 1) / kFoldersInAFolder) + "/folder " +
                               std::to_string(inFolder);
}

void MakeFile(const std::string& inPath, bool inIsWanted, int inNumber) {
    const int file = open(inPath.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0644);
    char info[32] = {};
    std::memcpy(info, inIsWanted ? "APPLFv8k" : "TEXTttxt", 8);
    if (!inIsWanted) info[7] = char('a' + inNumber % 26);
    if (file < 0 || fsetxattr(file, kAttribute, info, sizeof info, 0) != 0) Fail(inPath);
    close(file);
}

void MakeTree(const std::string& inRoot, int inFiles) {
    for (int i = 0; i < inFiles; ++i) {
        const std::string folder = FolderOf(inRoot, i / kFilesInAFolder);
        if (i % kFilesInAFolder == 0 && mkdir(folder.c_str(), 0755) != 0) Fail(folder);
        const char* word = i % 1000 == 999 ? "report " : "document ";
        MakeFile(folder + '/' + word + std::to_string(i) + ".txt",
                 i % (inFiles / kWanted) == inFiles / kWanted - 1, i);
    }
}

double Milliseconds(const std::function<void()>& inWork) {
    const auto start = std::chrono::steady_clock::now();
    inWork();
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    return time.count();
}

void Print(const char* inName, const std::vector<double>& inTimes) {
    std::printf("%s %.3f ms\n", inName, *std::min_element(inTimes.begin(), inTimes.end()));
}

// What a plain program does: names, with a look at each file, with an attribute of each file.
enum class Depth { kStatus, kAttribute };

long Walk(const std::string& inFolder, Depth inDepth) {
    long wanted = 0;
    DIR* folder = opendir(inFolder.c_str());
    if (!folder) Fail(inFolder);
    while (const dirent* entry = readdir(folder)) {
        const std::string name = entry->d_name;
        if (name == "." || name == "..") continue;
        struct stat facts;
        const std::string path = inFolder + '/' + name;
        if (fstatat(dirfd(folder), entry->d_name, &facts, AT_SYMLINK_NOFOLLOW) != 0) Fail(path);
        char info[32];
        if (S_ISDIR(facts.st_mode)) {
            wanted += Walk(path, inDepth);
        } else if (inDepth == Depth::kAttribute) {
            const bool has = lgetxattr(path.c_str(), kAttribute, info, sizeof info) == 32;
            wanted += has && std::memcmp(info, "APPLFv8k", 8) == 0;
        } else {
            wanted += strcasestr(entry->d_name, "report") != nullptr;
        }
    }
    closedir(folder);
    return wanted;
}

void Find(const std::string& inRoot) {
    const std::string command = "find '" + inRoot + "' -type f -iname '*report*' > /dev/null";
    if (std::system(command.c_str()) != 0) Fail("find");
}

FSVolumeRefNum Mount(const std::string& inRoot, OptionBits inOptions) {
    FSVolumeRefNum volume = 0;
    if (PlatformMountFolderWithOptions(inRoot.c_str(), "Search", inOptions, &volume) != noErr) {
        Fail("cannot mount " + inRoot);
    }
    return volume;
}

void SearchBySignature(FSVolumeRefNum inVolume) {
    FSSpec found[2 * kWanted];
    SInt32 count = 0;
    const OSErr error =
        CreatorTypeFileSearch(nullptr, inVolume, kCreator, kType, found, 2 * kWanted, &count, true);
    if (error != eofErr || count != kWanted) Fail("by signature: " + std::to_string(error));
}

void SearchByName(FSVolumeRefNum inVolume, int inFiles) {
    std::vector<FSSpec> found(size_t(inFiles / 1000 + 2));
    SInt32 count = 0;
    const OSErr error =
        NameFileSearch(nullptr, inVolume, reinterpret_cast<const UInt8*>("\6report"), found.data(),
                       SInt32(found.size()), &count, true, true);
    if (error != eofErr || count != inFiles / 1000) Fail("by name: " + std::to_string(error));
}

void Measure(const std::string& inRoot, int inFiles, int inRounds) {
    std::vector<double> find, attribute, status, signature, name, walkByName, walkBySignature;
    const auto indexed = [&](const std::function<void(FSVolumeRefNum)>& inWork) {
        const FSVolumeRefNum volume = Mount(inRoot, 0);
        inWork(volume);
        PlatformUnmountFolder(volume);
    };
    indexed([&](FSVolumeRefNum inVolume) {
        const double first = Milliseconds([&] { SearchBySignature(inVolume); });
        std::printf("search.build.ours %.3f ms\n", first);
    });
    for (int i = 0; i < inRounds; ++i) {
        attribute.push_back(Milliseconds([&] { Walk(inRoot, Depth::kAttribute); }));
        indexed([&](FSVolumeRefNum inVolume) {
            SearchBySignature(inVolume);  // opens what was closed by unmounting
            signature.push_back(Milliseconds([&] { SearchBySignature(inVolume); }));
            name.push_back(Milliseconds([&] { SearchByName(inVolume, inFiles); }));
        });
        find.push_back(Milliseconds([&] { Find(inRoot); }));
        status.push_back(Milliseconds([&] { Walk(inRoot, Depth::kStatus); }));
        const FSVolumeRefNum volume = Mount(inRoot, kPlatformMountNoCatalogSearch);
        walkByName.push_back(Milliseconds([&] { SearchByName(volume, inFiles); }));
        walkBySignature.push_back(Milliseconds([&] { SearchBySignature(volume); }));
        PlatformUnmountFolder(volume);
    }
    Print("search.attribute.peer", attribute);
    Print("search.signature.ours", signature);
    Print("search.name.ours", name);
    Print("search.find.peer", find);
    Print("search.status.peer", status);
    Print("search.walk_name.ours", walkByName);
    Print("search.walk_details.ours", walkBySignature);
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    std::printf("search.memory.ours %ld KiB\n", usage.ru_maxrss);
}

}  // namespace

int main(int inCount, char** inWords) {
    const int files = inCount > 2 ? std::atoi(inWords[2]) : 0;
    const int rounds = inCount > 3 ? std::atoi(inWords[3]) : 3;
    if (files < 1000 || rounds < 1) {
        std::fprintf(stderr, "usage: search_volume FOLDER FILES [ROUNDS]; at least 1000 files\n");
        return 2;
    }
    std::string pattern = fs::absolute(inWords[1]) / "search_volume-XXXXXX";
    const std::string root = mkdtemp(pattern.data());
    setenv("XDG_STATE_HOME", (root + "/state").c_str(), 1);
    MakeTree(root + "/tree", files);
    Measure(fs::canonical(root + "/tree"), files, rounds);
    fs::remove_all(root);
    return 0;
}
