// Deleting a folder tree as the library does, and as rm -rf does: one iteration is a tree of its
// own for each, deleted by a program of its own, from its start to its end.
//   delete_tree FOLDER FILES  measures both with trees of so many files in that folder
//   delete_tree --ours PATH   deletes the folder PATH
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "vantor/files/DirectoryDeletion.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFilesInAFolder = 50;

int Delete(const char* inPath) {
    FSRef ref;
    FSSpec spec;
    OSStatus status = FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath), &ref, nullptr);
    if (status == noErr)
        status = FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr);
    if (status == noErr) status = DeleteDirectory(spec.vRefNum, spec.parID, spec.name);
    if (status != noErr) std::fprintf(stderr, "delete_tree: %d\n", int(status));
    return status == noErr ? 0 : 1;
}

void MakeTree(const fs::path& inRoot, int inFiles) {
    for (int i = 0; i < inFiles; ++i) {
        const fs::path folder = inRoot / std::to_string(i / kFilesInAFolder);
        if (i % kFilesInAFolder == 0) fs::create_directories(folder);
        std::ofstream(folder / ("file " + std::to_string(i))) << "some bytes";
    }
}

double Milliseconds(std::vector<std::string> inWords) {
    std::vector<char*> words;
    for (std::string& word : inWords) words.push_back(word.data());
    words.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    pid_t child;
    int status = 1;
    if (posix_spawnp(&child, words[0], nullptr, nullptr, words.data(), environ) != 0 ||
        waitpid(child, &status, 0) != child || status != 0) {
        std::fprintf(stderr, "delete_tree: %s failed\n", words[0]);
        std::exit(1);
    }
    const std::chrono::duration<double, std::milli> time = std::chrono::steady_clock::now() - start;
    return time.count();
}

int Measure(const fs::path& inFolder, int inFiles) {
    std::string pattern = fs::absolute(inFolder) / "delete_tree-XXXXXX";
    const fs::path root = mkdtemp(pattern.data());
    MakeTree(root / "rm", inFiles);
    MakeTree(root / "ours", inFiles);
    const double rm = Milliseconds({"rm", "-rf", root / "rm"});
    const double ours = Milliseconds({fs::read_symlink("/proc/self/exe"), "--ours", root / "ours"});
    std::printf("delete.rm.wall %.3f ms\ndelete.ours.wall %.3f ms\n", rm, ours);
    const bool gone = fs::is_empty(root);
    fs::remove_all(root);
    return gone ? 0 : 1;
}

}  // namespace

int main(int inCount, char** inWords) {
    if (inCount != 3) {
        std::fprintf(stderr, "usage: delete_tree FOLDER FILES\n");
        return 2;
    }
    if (std::string(inWords[1]) == "--ours") return Delete(inWords[2]);
    return Measure(inWords[1], std::atoi(inWords[2]));
}
