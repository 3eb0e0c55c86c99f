// Another process for the tests of resource files, one request a run.
//   open PATH PERMISSION   prints number and error, then waits for the end of standard input
//   data PATH PERMISSION   the same for the data fork, without waiting
//   churn PATH             writes two resources that are always alike, again and again until
//                          killed; prints a line once it has begun
//   own ID                 prints the current file, then the program's own 'STR ' with that ID
#include <Carbon/Carbon.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

ResFileRefNum OpenPath(const char* inPath, SInt8 inPermission) {
    FSRef ref;
    if (FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath), &ref, nullptr) != noErr) return -2;
    return FSOpenResFile(&ref, inPermission);
}

int HoldOpen(const char* inPath, int inPermission) {
    const ResFileRefNum number = OpenPath(inPath, SInt8(inPermission));
    std::printf("%d %d\n", number, ResError());
    std::fflush(stdout);
    char byte;
    while (read(STDIN_FILENO, &byte, 1) > 0) continue;
    return 0;
}

int OpenData(const char* inPath, int inPermission) {
    FSRef ref;
    ResFileRefNum number = -2;
    if (FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath), &ref, nullptr) == noErr)
        FSOpenResourceFile(&ref, 0, nullptr, SInt8(inPermission), &number);
    std::printf("%d %d\n", number, ResError());
    return 0;
}

int Churn(const char* inPath) {
    const ResFileRefNum number = OpenPath(inPath, fsRdWrPerm);
    if (number <= 0) return 1;
    std::puts("begun");
    std::fflush(stdout);
    for (unsigned turn = unsigned(getpid());; ++turn) {
        const std::string text(1 + turn * 7919 % 60000, char('a' + turn % 26));
        for (const ResID id : {ResID(1), ResID(2)}) {
            const Handle handle = Get1Resource('Same', id);
            if (!handle || PtrToXHand(text.data(), handle, Size(text.size())) != noErr) return 2;
            ChangedResource(handle);
        }
        UpdateResFile(number);
        if (ResError() != noErr) return 3;
    }
}

int PrintOwn(int inID) {
    const ResFileRefNum current = CurResFile();
    const StringHandle string = GetString(SInt16(inID));
    const std::string text =
        string ? std::string(reinterpret_cast<char*>(*string) + 1, (*string)[0]) : "none";
    std::printf("%s %s\n", current == kSystemResFile ? "system" : "own", text.c_str());
    return 0;
}

}  // namespace

int main(int inCount, char** inWords) {
    const std::string word = inCount > 2 ? inWords[1] : "";
    if (word == "open" && inCount == 4) return HoldOpen(inWords[2], std::atoi(inWords[3]));
    if (word == "data" && inCount == 4) return OpenData(inWords[2], std::atoi(inWords[3]));
    if (word == "churn") return Churn(inWords[2]);
    if (word == "own") return PrintOwn(std::atoi(inWords[2]));
    return 64;
}
