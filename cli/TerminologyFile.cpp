// Finds the file that holds an application's words: a bundle's own resources, or the program's.
#include <algorithm>
#include <charconv>
#include <climits>
#include <filesystem>

#include "Failure.h"
#include "ResourceFile.h"
#include "Terminology.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

constexpr ResType kTerminology = 'aete';

std::string PathOf(const FSRef& inRef) {
    char path[PATH_MAX] = "";
    ThrowIfFailed(FSRefMakePath(&inRef, reinterpret_cast<UInt8*>(path), sizeof path),
                  "find the application");
    return path;
}

// Of a running program.
bool FindByPid(const std::string& inWord, FSRef* outRef) {
    pid_t pid = 0;
    ProcessSerialNumber number;
    const char* const end = inWord.data() + inWord.size();
    const auto parsed = std::from_chars(inWord.data(), end, pid);
    return parsed.ec == std::errc() && parsed.ptr == end &&
           GetProcessForPID(pid, &number) == noErr &&
           GetProcessBundleLocation(&number, outRef) == noErr;
}

bool FindBySignature(const std::string& inWord, FSRef* outRef) {
    if (inWord.size() != sizeof(OSType)) return false;
    OSType signature = 0;
    for (const char byte : inWord) signature = signature << 8 | static_cast<UInt8>(byte);
    return LSFindApplicationForInfo(signature, nullptr, nullptr, outRef, nullptr) == noErr;
}

bool FindByName(const std::string& inWord, FSRef* outRef) {
    const CFStringRef name =
        CFStringCreateWithCString(nullptr, inWord.c_str(), kCFStringEncodingUTF8);
    if (name == nullptr) return false;
    const OSStatus status = LSFindApplicationForInfo(0, nullptr, name, outRef, nullptr);
    CFRelease(name);
    return status == noErr;
}

std::string PathOfApplication(const std::string& inWord) {
    if (inWord.find('/') != std::string::npos) return fs::absolute(inWord);
    FSRef ref;
    if (FindByPid(inWord, &ref) || FindBySignature(inWord, &ref) || FindByName(inWord, &ref))
        return PathOf(ref);
    throw Failure("No application has the signature, name, PID or path '" + inWord + "'",
                  kLSApplicationNotFoundErr);
}

// The resource files that a bundle's folder of resources holds, the executable's own among them.
std::vector<std::string> ResourceFilesOf(const std::string& inApplication) {
    if (!fs::is_directory(inApplication)) return {inApplication};
    std::vector<std::string> files;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(inApplication + "/Contents/Resources", none))
        if (entry.path().extension() == ".rsrc") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void AddSuites(const std::string& inFile, Suites& ioSuites) {
    const ResourceFile file(inFile);
    const SInt16 count = Count1Resources(kTerminology);
    for (SInt16 i = 1; i <= count; ++i) {
        const Handle resource = Get1IndResource(kTerminology, i);
        if (resource == nullptr) RefuseResources(inFile, ResError());
        const auto* bytes = reinterpret_cast<const UInt8*>(*resource);
        const Suites suites = ReadTerminology({bytes, size_t(GetHandleSize(resource))});
        ioSuites.insert(ioSuites.end(), suites.begin(), suites.end());
    }
}

}  // namespace

Suites TerminologyOf(const std::string& inApplication) {
    Suites suites;
    for (const auto& file : ResourceFilesOf(PathOfApplication(inApplication)))
        AddSuites(file, suites);
    if (suites.empty()) throw Failure(inApplication + ": it has no dictionary", resNotFound);
    return suites;
}

}  // namespace cli
