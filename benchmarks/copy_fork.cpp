// Copies the data fork of one file into another as CopyFork does, with a buffer of 64 KiB, and
// prints how long that took from the opening of the first fork to the closing of the last.
//   copy_fork SOURCE DESTINATION
#include <Carbon/Carbon.h>

#include <chrono>
#include <cstdio>
#include <vector>

namespace {

constexpr SInt32 kBufferSize = 64 * 1024;

bool SpecOf(const char* inPath, FSSpec* outSpec) {
    FSRef ref;
    return FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath), &ref, nullptr) == noErr &&
           FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, outSpec, nullptr) == noErr;
}

OSErr CopyAll(SInt16 inSource, SInt16 inDestination) {
    SInt32 length = 0;
    OSErr error = GetEOF(inSource, &length);
    if (error == noErr) error = SetEOF(inDestination, length);
    std::vector<char> buffer(kBufferSize);
    ParamBlockRec read{}, write{};
    read.ioParam.ioRefNum = inSource;
    write.ioParam.ioRefNum = inDestination;
    read.ioParam.ioBuffer = write.ioParam.ioBuffer = buffer.data();
    read.ioParam.ioReqCount = kBufferSize;
    read.ioParam.ioPosMode = write.ioParam.ioPosMode = fsAtMark | int(noCacheMask);
    while (error == noErr) {
        const OSErr readError = PBReadSync(&read);
        write.ioParam.ioReqCount = read.ioParam.ioActCount;
        error = PBWriteSync(&write);
        if (readError != noErr) return error == noErr && readError != eofErr ? readError : error;
    }
    return error;
}

OSErr Copy(const FSSpec& inSource, const FSSpec& inDestination) {
    SInt16 source = 0, destination = 0;
    OSErr error = FSpOpenDF(&inSource, fsRdPerm, &source);
    if (error != noErr) return error;
    error = FSpOpenDF(&inDestination, fsRdWrPerm, &destination);
    if (error == noErr) {
        error = CopyAll(source, destination);
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
