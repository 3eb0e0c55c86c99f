// What listing a folder costs for each entry, in a small folder and in a large one.
//
//   listings [--dir FOLDER] [--seconds S] [NAME...]
//
// items_1000 and items_100000 list folders of so many files, as far as their entries have numbers,
// with GetDirItems, 256 at a time, from the start each time and in turns. By the processor's time,
// of which the least counts. The first listing of each, which reads the folder, is not counted
// among the others but told apart (".first").
#include <Carbon/Carbon.h>
#include <Platform/Platform.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "cpu_time.h"
#include "vantor/files/Catalog.h"

namespace {

constexpr int kMostListed = 32767;

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

[[noreturn]] void Fail(const char* inWhat, int inCode) {
    std::fprintf(stderr, "listings: %s: %d\n", inWhat, inCode);
    std::exit(1);
}

double Since(Clock::time_point inStart) {
    return std::chrono::duration<double>(Clock::now() - inStart).count();
}

// A folder mounted as a volume, with that many files in it.
class Volume {
  public:
    Volume(const fs::path& inParent, int inFiles) : mRoot(inParent / std::to_string(inFiles)) {
        fs::create_directories(mRoot);
        for (int i = 0; i < inFiles; ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "file %07d", i);
            std::ofstream{mRoot / name};
        }
        const OSErr err = PlatformMountFolder(mRoot.c_str(), nullptr, &mNumber);
        if (err != noErr) Fail("mounting", err);
    }
    ~Volume() {
        PlatformUnmountFolder(mNumber);
        std::error_code ignored;
        fs::remove_all(mRoot, ignored);
    }
    Volume(const Volume&) = delete;
    Volume& operator=(const Volume&) = delete;

    // Lists all that can be listed, and tells how many entries that were.
    int List() const {
        static FSSpec sItems[256];
        int listed = 0;
        SInt16 index = 1, count = 0;
        OSErr err = noErr;
        while (err == noErr && index > 0) {
            err = GetDirItems(mNumber, fsRtDirID, nullptr, true, true, sItems, 256, &count, &index);
            listed += count;
        }
        if (err != noErr && err != fnfErr && err != paramErr) Fail("listing", err);
        return listed;
    }

  private:
    fs::path mRoot;
    FSVolumeRefNum mNumber = 0;
};

// Listing a folder so many times, by the processor's time.
double SecondsForEach(const Volume& inVolume, int inTimes) {
    int listed = 0;
    const uint64_t start = CpuNanoseconds();
    for (int i = 0; i < inTimes; ++i) listed += inVolume.List();
    return double(CpuNanoseconds() - start) / 1e9 / std::max(listed, 1);
}

// A folder of so many files, and what an entry of it cost each time.
struct Measurement {
    Measurement(int inFiles, const fs::path& inParent)
        : files(inFiles), volume(inParent, inFiles) {}

    void First() { Print(".first", SecondsForEach(volume, 1)); }
    // As many listings as make up for the smaller folder's being done sooner: short work finds a
    // moment in which nobody else uses the machine, long work never.
    void Repeat(int inLargest) {
        each = std::min(each, SecondsForEach(volume, std::max(inLargest / files, 1)));
    }
    void Least() { Print(".each", each); }
    void Print(const char* inWhat, double inSeconds) const {
        std::printf("ours.items_%d%s %.1f ns\n", files, inWhat, inSeconds * 1e9);
    }

    int files;
    Volume volume;
    double each = std::numeric_limits<double>::max();
};

// In turns, so that slow phases of the machine fall on all alike.
void Measure(std::vector<std::unique_ptr<Measurement>>& ioAll, double inSeconds) {
    int largest = 0, rounds = 0;
    for (const auto& one : ioAll) {
        one->First();
        largest = std::max(largest, one->files);
    }
    for (const auto start = Clock::now(); Since(start) < inSeconds || rounds < 5; ++rounds) {
        for (const auto& one : ioAll) one->Repeat(std::min(largest, kMostListed));
    }
    for (const auto& one : ioAll) one->Least();
}

}  // namespace

int main(int inCount, char** inWords) {
    fs::path parent = fs::temp_directory_path();
    double seconds = 1;
    std::vector<std::string> names;
    for (int i = 1; i < inCount; ++i) {
        const bool more = i + 1 < inCount;
        if (more && std::strcmp(inWords[i], "--dir") == 0)
            parent = inWords[++i];
        else if (more && std::strcmp(inWords[i], "--seconds") == 0)
            seconds = std::atof(inWords[++i]);
        else
            names.emplace_back(inWords[i]);
    }
    if (names.empty()) names = {"items_1000", "items_100000"};
    parent /= "vantor-listings-" + std::to_string(getpid());
    std::vector<std::unique_ptr<Measurement>> all;
    for (const std::string& name : names) {
        const int files = std::atoi(name.c_str() + name.find('_') + 1);
        if (!name.starts_with("items_") || files <= 0) Fail("not a measurement", 2);
        all.push_back(std::make_unique<Measurement>(files, parent));
    }
    Measure(all, seconds);
    all.clear();
    std::error_code ignored;
    fs::remove_all(parent, ignored);
    return 0;
}
