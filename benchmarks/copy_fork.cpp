// Copies the data fork of one file into another with CopyFork and a buffer of 64 KiB, and
// prints how long that took from the opening of the first fork to the closing of the last.
//   copy_fork SOURCE DESTINATION
#include <Carbon/Carbon.h>

#include <chrono>
#include <cstdio>
#include <vector>

#include "vantor/files/ForkCopy.h"

namespace {

constexpr SInt32 kBufferSize = 64 * 1024;

bool SpecOf(const char* inPath, FSSpec* outSpec) {
    FSRef ref;
    return FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath), &ref, nullptr) == noErr &&
           FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, outSpec, nullptr) == noErr;
}

OSErr Copy(const FSSpec& inSource, const FSSpec& inDestination) {
    SInt16 source = 0, destination = 0;
    OSErr error = FSpOpenDF(&inSource, fsRdPerm, &source);
    if (error != noErr) return error;
    error = FSpOpenDF(&inDestination, fsRdWrPerm, &destination);
    if (error == noErr) {
        std::vector<char> buffer(kBufferSize);
        error = CopyFork(source, destination, buffer.data(), kBufferSize);
        const OSErr closeError = FSClose(destination);
        if (error == noErr) error = closeError;
    }
    const OSErr closeError = FSClose(source);
    return error == noErr ? closeError : error;
}

}  // namespace

int main(int inCount, char** inArguments) {
    if (inCount != 3) {
        std::fprintf(stderr, "usage: copy_fork SOURCE DESTINATION\n");
        return 2;
    }
    std::FILE* created = std::fopen(inArguments[2], "wb");
    FSSpec source, destination;
    if (!created || std::fclose(created) != 0 || !SpecOf(inArguments[1], &source) ||
        !SpecOf(inArguments[2], &destination)) {
        std::fprintf(stderr, "copy_fork: cannot find both files\n");
        return 1;
    }
    const auto start = std::chrono::steady_clock::now();
    const OSErr error = Copy(source, destination);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    if (error != noErr) {
        std::fprintf(stderr, "copy_fork: error %d\n", error);
        return 1;
    }
    std::printf("ours.copy_fork.wall %.6f s\n", taken.count());
    return 0;
}
