// Finds programs by what people call them.
#include "Target.h"

#include <strings.h>

#include <charconv>
#include <climits>
#include <cstdlib>

#include "Failure.h"
#include "Output.h"

namespace cli {
namespace {

struct Program {
    ProcessSerialNumber number;
    OSType signature = 0;
    std::string name;
};

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

std::optional<ProcessSerialNumber> WithPid(const std::string& inWord) {
    pid_t pid = 0;
    ProcessSerialNumber number;
    const auto parsed = std::from_chars(inWord.data(), inWord.data() + inWord.size(), pid);
    const bool isNumber = parsed.ec == std::errc() && *parsed.ptr == '\0';
    if (!isNumber || GetProcessForPID(pid, &number) != noErr) return {};
    return number;
}

std::string RealPath(const std::string& inPath) {
    char path[PATH_MAX] = "";
    return realpath(inPath.c_str(), path) != nullptr ? path : inPath;
}

// The path of the bundle or file, empty when it is gone.
std::string PathOf(const Program& inProgram) {
    FSRef ref;
    char path[PATH_MAX] = "";
    if (GetProcessBundleLocation(&inProgram.number, &ref) != noErr) return {};
    const OSStatus status = FSRefMakePath(&ref, reinterpret_cast<UInt8*>(path), sizeof path);
    return status == noErr ? RealPath(path) : std::string();
}

std::optional<ProcessSerialNumber> AtPath(const std::string& inPath) {
    const std::string path = RealPath(inPath);
    return First([&](const Program& inProgram) { return PathOf(inProgram) == path; });
}

std::optional<ProcessSerialNumber> WithSignature(const std::string& inWord) {
    if (inWord.empty() || MacRoman(inWord).size() > sizeof(OSType)) return {};
    const OSType signature = CodeNamed(inWord);
    return First([&](const Program& inProgram) { return inProgram.signature == signature; });
}

}  // namespace

std::string MacRoman(const std::string& inUtf8) {
    const CFStringRef string =
        CFStringCreateWithCString(nullptr, inUtf8.c_str(), kCFStringEncodingUTF8);
    std::string text(inUtf8.size() + 1, '\0');
    const bool fits = string != nullptr &&
                      CFStringGetCString(string, text.data(), static_cast<CFIndex>(text.size()),
                                         kCFStringEncodingMacRoman);
    if (string != nullptr) CFRelease(string);
    if (!fits) throw Failure(inUtf8 + ": this cannot be written in MacRoman", paramErr, kBadUsage);
    text.resize(text.find('\0'));
    return text;
}

OSType CodeNamed(const std::string& inText) {
    const std::string text = MacRoman(inText);
    if (text.empty() || text.size() > sizeof(OSType))
        throw Failure("'" + inText + "' is no code: codes have one to four characters", paramErr,
                      kBadUsage);
    OSType code = 0;
    for (size_t i = 0; i < sizeof code; ++i)
        code = code << 8 | static_cast<UInt8>(i < text.size() ? text[i] : ' ');
    return code;
}

std::optional<ProcessSerialNumber> FindTarget(const std::string& inWord) {
    if (inWord.find('/') != std::string::npos) return AtPath(inWord);
    if (const auto found = WithPid(inWord)) return found;
    if (const auto found = WithSignature(inWord)) return found;
    return First([&](const Program& inProgram) {
        return strcasecmp(inProgram.name.c_str(), inWord.c_str()) == 0;
    });
}

ProcessSerialNumber TargetNamed(const std::string& inWord) {
    if (const auto found = FindTarget(inWord)) return *found;
    throw Failure("No running program has the signature, name, PID or path '" + inWord +
                      "'; vantor processes lists them",
                  procNotFound);
}

std::string Described(const ProcessSerialNumber& inTarget) {
    pid_t pid = 0;
    GetProcessPID(&inTarget, &pid);
    const auto program = ProgramWith(inTarget);
    return (program ? program->name : std::string("A program")) + " (PID " + std::to_string(pid) +
           ")";
}

}  // namespace cli
