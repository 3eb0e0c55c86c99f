// Finds programs by what people call them.
#include "Target.h"

#include <strings.h>

#include <charconv>
#include <climits>
#include <cstdlib>

#include "Codes.h"
#include "Failure.h"
#include "Output.h"

namespace cli {
namespace {

struct Program {
    ProcessSerialNumber number;
    OSType signature = 0;
    std::string name;
};

bool IsPath(const std::string& inWord) {
    return inWord.find('/') != std::string::npos;
}

// Nothing for one that ended since it was listed.
std::optional<Program> ProgramWith(const ProcessSerialNumber& inNumber) {
    constexpr UInt32 kInformationLength = 60;
    Str63 name = "";
    ProcessInfoRec info = {};
    info.processInfoLength = kInformationLength;
    info.processName = name;
    if (GetProcessInformation(&inNumber, &info) != noErr) return {};
    return Program{inNumber, info.processSignature, MacRomanText(name)};
}

template <typename Fits>
std::optional<ProcessSerialNumber> First(Fits inFits) {
    ProcessSerialNumber number = {0, kNoProcess};
    while (GetNextProcess(&number) == noErr) {
        const auto program = ProgramWith(number);
        if (program && inFits(*program)) return number;
    }
    return {};
}

std::optional<UInt32> Number(const std::string& inWord) {
    UInt32 number = 0;
    const char* const end = inWord.data() + inWord.size();
    const auto parsed = std::from_chars(inWord.data(), end, number);
    return parsed.ec == std::errc() && parsed.ptr == end ? std::optional(number) : std::nullopt;
}

std::optional<ProcessSerialNumber> WithNumber(const std::string& inWord) {
    const auto number = Number(inWord);
    ProcessSerialNumber found = {0, number.value_or(0)};
    if (!number || *number > INT_MAX) return {};
    if (GetProcessForPID(static_cast<pid_t>(*number), &found) == noErr) return found;
    return First([&](const Program& inProgram) {
        return inProgram.number.highLongOfPSN == 0 && inProgram.number.lowLongOfPSN == *number;
    });
}

std::string RealPath(const std::string& inPath) {
    char path[PATH_MAX] = "";
    return realpath(inPath.c_str(), path) != nullptr ? path : inPath;
}

std::optional<std::string> PathOf(const FSRef& inRef) {
    char path[PATH_MAX] = "";
    if (FSRefMakePath(&inRef, reinterpret_cast<UInt8*>(path), sizeof path) != noErr) return {};
    return path;
}

std::optional<ProcessSerialNumber> AtPath(const std::string& inPath) {
    const std::string path = RealPath(inPath);
    return First([&](const Program& inProgram) {
        const auto bundle = cli::PathOf(inProgram.number);
        return bundle && RealPath(*bundle) == path;
    });
}

bool IsName(const std::string& inWord, const std::string& inName) {
    return strcasecmp(inName.c_str(), inWord.c_str()) == 0;
}

std::optional<ProcessSerialNumber> WithSignature(const std::string& inWord) {
    if (!IsCode(inWord)) return {};
    const OSType signature = CodeNamed(inWord);
    return First([&](const Program& inProgram) { return inProgram.signature == signature; });
}

OSStatus FindInstalledByName(const std::string& inWord, FSRef* outBundle) {
    const CFStringRef name =
        CFStringCreateWithCString(nullptr, inWord.c_str(), kCFStringEncodingUTF8);
    if (name == nullptr) return kLSApplicationNotFoundErr;
    const OSStatus status = LSFindApplicationForInfo(0, nullptr, name, outBundle, nullptr);
    CFRelease(name);
    return status;
}

}  // namespace

std::optional<ProcessSerialNumber> FindTarget(const std::string& inWord) {
    if (IsPath(inWord)) return AtPath(inWord);
    if (const auto found = WithNumber(inWord)) return found;
    if (const auto found = WithSignature(inWord)) return found;
    return First([&](const Program& inProgram) { return IsName(inWord, inProgram.name); });
}

ProcessSerialNumber TargetNamed(const std::string& inWord) {
    if (const auto found = FindTarget(inWord)) return *found;
    FSRef bundle;
    const bool isInstalled = FindInstalled(inWord, &bundle) == noErr;
    throw Failure("No running program has the signature, name, PID or path '" + inWord + "'; " +
                      (isInstalled ? "vantor launch starts it" : "vantor processes lists them"),
                  procNotFound);
}

bool IsTarget(const std::string& inWord, const ProcessSerialNumber& inNumber,
              const std::string& inName) {
    if (IsName(inWord, inName) || Number(inWord) == inNumber.lowLongOfPSN) return true;
    const auto found = FindTarget(inWord);
    return found && found->lowLongOfPSN == inNumber.lowLongOfPSN &&
           found->highLongOfPSN == inNumber.highLongOfPSN;
}

OSStatus FindInstalled(const std::string& inWord, FSRef* outBundle) {
    if (IsPath(inWord))
        return FSPathMakeRef(reinterpret_cast<const UInt8*>(inWord.c_str()), outBundle, nullptr);
    const bool isSignature =
        IsCode(inWord) &&
        LSFindApplicationForInfo(CodeNamed(inWord), nullptr, nullptr, outBundle, nullptr) == noErr;
    return isSignature ? OSStatus{noErr} : FindInstalledByName(inWord, outBundle);
}

std::optional<std::string> FindApplication(const std::string& inWord) {
    if (IsPath(inWord)) return inWord;
    if (const auto running = FindTarget(inWord)) return PathOf(*running);
    FSRef bundle;
    return FindInstalled(inWord, &bundle) == noErr ? PathOf(bundle) : std::nullopt;
}

std::optional<std::string> PathOf(const ProcessSerialNumber& inTarget) {
    FSRef ref;
    return GetProcessBundleLocation(&inTarget, &ref) == noErr ? PathOf(ref) : std::nullopt;
}

std::string NameOf(const ProcessSerialNumber& inTarget) {
    const auto program = ProgramWith(inTarget);
    return program ? Shown(program->name) : std::string("A program");
}

std::string Described(const ProcessSerialNumber& inTarget) {
    pid_t pid = 0;
    GetProcessPID(&inTarget, &pid);
    return NameOf(inTarget) + " (PID " + std::to_string(pid) + ")";
}

}  // namespace cli
