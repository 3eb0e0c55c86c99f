// Owns the step from a program file or a bundle to type, creator, name and mode.
#include "process_manager/identity.h"

#include <Carbon/Processes.h>
#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "core_foundation/internal.h"
#include "file_manager/metadata/metadata.h"
#include "text_utilities/mac_roman.h"

namespace carbon {
namespace {

namespace fs = std::filesystem;

constexpr UInt32 kUsualMode = modeCanBackground | mode32BitCompatible | modeHighLevelEventAware;
constexpr std::size_t kLongestName = 31;

// A flag may be a Boolean, a number or a string beginning with 1, y or t.
bool IsTrue(CFTypeRef inValue) {
    if (inValue == nullptr) return false;
    const CFTypeID type = CFGetTypeID(inValue);
    if (type == CFBooleanGetTypeID()) return CFBooleanGetValue(static_cast<CFBooleanRef>(inValue));
    SInt32 number = 0;
    if (type == CFNumberGetTypeID())
        CFNumberGetValue(static_cast<CFNumberRef>(inValue), kCFNumberSInt32Type, &number);
    if (type != CFStringGetTypeID()) return number != 0;
    const std::string text = Utf8(static_cast<CFStringRef>(inValue));
    return !text.empty() && std::strchr("1yYtT", text[0]) != nullptr;
}

bool BundleSays(CFBundleRef inBundle, const char* inKey) {
    const CFStringRef key = StringFromUtf8(inKey);
    const bool result = IsTrue(CFBundleGetValueForInfoDictionaryKey(inBundle, key));
    CFRelease(key);
    return result;
}

bool IsBackgroundBundle(const std::string& inBundle) {
    const CFURLRef url = UrlFromPath(inBundle, true);
    const CFBundleRef bundle = url == nullptr ? nullptr : CFBundleCreate(nullptr, url);
    const bool result = bundle != nullptr &&
                        (BundleSays(bundle, "LSBackgroundOnly") || BundleSays(bundle, "NSBGOnly"));
    if (bundle != nullptr) CFRelease(bundle);
    if (url != nullptr) CFRelease(url);
    return result;
}

// An application that is one file has its type and creator in its Finder information.
void TakeFinderInfo(const std::string& inExecutable, Program* ioProgram) {
    Metadata metadata;
    if (ReadMetadata(inExecutable, &metadata) != noErr) return;
    FInfo info;
    std::memcpy(&info, metadata.finderInfo, sizeof info);
    if (info.fdType != 'APPL' && info.fdType != 'appe') return;
    ioProgram->type = info.fdType;
    if (info.fdCreator != 0) ioProgram->signature = info.fdCreator;
    if (info.fdType == 'appe') ioProgram->mode |= modeOnlyBackground;
}

std::string Resolved(const std::string& inPath) {
    std::error_code error;
    const fs::path path = fs::canonical(inPath, error);
    return error ? inPath : path.string();
}

bool IsContinuation(char inByte) {
    return (UInt8(inByte) & 0xC0) == 0x80;
}

// Character by character, for a name that does not fit as a whole.
std::string NearestMacRoman(const std::string& inText) {
    std::string result;
    for (std::size_t at = 0; at < inText.size();) {
        std::size_t end = at + 1;
        while (end < inText.size() && IsContinuation(inText[end])) ++end;
        result += MacRomanFromUtf8(inText.substr(at, end - at)).value_or("?");
        at = end;
    }
    return result;
}

}  // namespace

std::string EnclosingBundle(const std::string& inExecutable) {
    const fs::path folder = fs::path(inExecutable).parent_path();
    const fs::path contents = folder.parent_path();
    const bool inside = contents.filename() == "Contents" &&
                        (folder.filename() == "Linux" || folder.filename() == "MacOS");
    if (!inside) return {};
    const std::string bundle = contents.parent_path().string();
    const auto facts = FactsOfBundle(bundle);
    return facts != nullptr && facts->isPackage ? bundle : std::string();
}

Program ProgramOfBundle(const std::string& inBundle) {
    Program program;
    program.bundle = Resolved(inBundle);
    const auto facts = FactsOfBundle(program.bundle);
    if (facts != nullptr) {
        program.executable = facts->executablePath.empty() ? "" : Resolved(facts->executablePath);
        program.fullName = facts->name;
        program.type = facts->type;
        program.signature = facts->creator;
    }
    program.mode = kUsualMode;
    if (program.type == 'appe' || IsBackgroundBundle(program.bundle))
        program.mode |= modeOnlyBackground;
    return program;
}

Program ProgramOfExecutable(const std::string& inExecutable) {
    const std::string executable = Resolved(inExecutable);
    const std::string bundle = EnclosingBundle(executable);
    Program program;
    if (!bundle.empty()) program = ProgramOfBundle(bundle);
    program.executable = executable;
    program.mode |= kUsualMode;
    if (bundle.empty()) {
        program.fullName = fs::path(executable).filename().string();
        TakeFinderInfo(executable, &program);
    }
    return program;
}

// The link names the program file itself, whatever name or link it was started by. A file replaced
// or deleted since then is still named, with a mark behind it.
Program OwnProgram() {
    std::error_code error;
    std::string path = fs::read_symlink("/proc/self/exe", error).string();
    constexpr std::string_view kGone = " (deleted)";
    if (path.ends_with(kGone) && !fs::exists(path, error)) path.resize(path.size() - kGone.size());
    return ProgramOfExecutable(path);
}

void ShortName(const std::string& inFullName, Str63 outName) {
    const auto whole = MacRomanFromUtf8(inFullName);
    const std::string name = whole ? *whole : NearestMacRoman(inFullName);
    outName[0] = UInt8(std::min(name.size(), kLongestName));
    std::memcpy(outName + 1, name.data(), outName[0]);
}

}  // namespace carbon
