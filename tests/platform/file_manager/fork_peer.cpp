// Another process for the tests of forks. Each line of input is a request, each line of output its
// answer, in numbers.
//   open PATH data|resource PERMISSION  error and number
//   deny PATH data|resource MODES       error and number
//   close NUMBER                        error
//   read NUMBER AT COUNT                error and the text
//   write NUMBER AT TEXT                error
//   length NUMBER                       error and length
//   cut NUMBER LENGTH                   error
//   lock|unlock NUMBER AT COUNT         error
// With the arguments "change PATH" or "replace PATH" it changes metadata or replaces the resource
// fork for ever, each time to one of a few whole states, until it is killed.
#include <Carbon/Carbon.h>

#include <cstdio>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "file_manager/metadata/metadata.h"

namespace {

FSSpec SpecOf(const std::string& inPath) {
    FSRef ref;
    FSSpec spec{};
    if (FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath.c_str()), &ref, nullptr) == noErr)
        FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr);
    return spec;
}

std::string Open(std::istream& inRequest, bool inIsDeny) {
    std::string path, fork;
    int modes = 0;
    inRequest >> path >> fork >> modes;
    FSSpec spec = SpecOf(path);
    HParamBlockRec block{};
    block.ioParam.ioNamePtr = spec.name;
    block.ioParam.ioVRefNum = spec.vRefNum;
    OSErr error;
    if (inIsDeny) {
        block.accessParam.ioDirID = spec.parID;
        block.accessParam.ioDenyModes = SInt16(modes);
        error = fork == "data" ? PBHOpenDenySync(&block) : PBHOpenRFDenySync(&block);
    } else {
        block.fileParam.ioDirID = spec.parID;
        block.ioParam.ioPermssn = SInt8(modes);
        error = fork == "data" ? PBHOpenDFSync(&block) : PBHOpenRFSync(&block);
    }
    return std::to_string(error) + ' ' + std::to_string(block.ioParam.ioRefNum);
}

std::string Move(std::istream& inRequest, bool inIsWrite) {
    SInt16 number = 0;
    SInt32 offset = 0;
    std::string text;
    inRequest >> number >> offset >> text;
    if (!inIsWrite) text = std::string(size_t(std::stoi(text)), '?');
    ParamBlockRec block{};
    block.ioParam.ioRefNum = number;
    block.ioParam.ioPosOffset = offset;
    block.ioParam.ioPosMode = fsFromStart;
    block.ioParam.ioReqCount = SInt32(text.size());
    block.ioParam.ioBuffer = text.data();
    const OSErr error = inIsWrite ? PBWriteSync(&block) : PBReadSync(&block);
    return std::to_string(error) + ' ' + text.substr(0, size_t(block.ioParam.ioActCount));
}

std::string Length(std::istream& inRequest) {
    SInt16 number = 0;
    SInt32 length = -1;
    inRequest >> number;
    const OSErr error = GetEOF(number, &length);
    return std::to_string(error) + ' ' + std::to_string(length);
}

std::string Cut(std::istream& inRequest) {
    SInt16 number = 0;
    SInt32 length = 0;
    inRequest >> number >> length;
    return std::to_string(SetEOF(number, length));
}

std::string LockRange(std::istream& inRequest, bool inIsLock) {
    SInt16 number = 0;
    SInt32 offset = 0, count = 0;
    inRequest >> number >> offset >> count;
    ParamBlockRec block{};
    block.ioParam.ioPosMode = fsFromStart;
    block.ioParam.ioRefNum = number;
    block.ioParam.ioPosOffset = offset;
    block.ioParam.ioReqCount = count;
    return std::to_string(inIsLock ? PBLockRangeSync(&block) : PBUnlockRangeSync(&block));
}

std::string Close(std::istream& inRequest) {
    SInt16 number = 0;
    inRequest >> number;
    return std::to_string(FSClose(number));
}

std::string Answer(const std::string& inLine) {
    std::istringstream request(inLine);
    std::string verb;
    request >> verb;
    if (verb == "open" || verb == "deny") return Open(request, verb == "deny");
    if (verb == "read" || verb == "write") return Move(request, verb == "write");
    if (verb == "length") return Length(request);
    if (verb == "cut") return Cut(request);
    if (verb == "lock" || verb == "unlock") return LockRange(request, verb == "lock");
    if (verb == "close") return Close(request);
    return "?";
}

int ChangeForEver(const std::string& inPath) {
    for (UInt8 i = 0;; ++i) {
        const OSErr error = carbon::ChangeMetadata(inPath, [&](carbon::Metadata* io) {
            std::memset(io->finderInfo, i | 1, sizeof io->finderInfo);
            std::memset(io->extFinderInfo, i | 1, sizeof io->extFinderInfo);
            io->facts.created = i | 1;
            io->facts.comment = std::string(1 + i % 50, char(i | 1));
        });
        if (error != noErr) return 1;
    }
}

int ReplaceForEver(const std::string& inPath) {
    for (UInt32 i = 0;; ++i) {
        const std::vector<UInt8> bytes(1 + i * 7919 % 100000, UInt8(i));
        if (carbon::ReplaceResourceFork(inPath, bytes) != noErr) return 1;
    }
}

}  // namespace

int main(int inCount, char** inArguments) {
    const std::string command = inCount == 3 ? inArguments[1] : "";
    if (command == "change") return ChangeForEver(inArguments[2]);
    if (command == "replace") return ReplaceForEver(inArguments[2]);
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << Answer(line) << std::endl;
    }
    return 0;
}
