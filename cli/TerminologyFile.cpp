// Finds the files that hold an application's words: a bundle's own resources, or the program's, and
// the scripting definition that its Info.plist names.
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Failure.h"
#include "ResourceFile.h"
#include "ScriptingDefinition.h"
#include "Target.h"
#include "Terminology.h"

namespace cli {
namespace {

namespace fs = std::filesystem;

constexpr ResType kTerminology = 'aete';
constexpr const char* kDefinitionExtension = ".sdef";
constexpr std::uintmax_t kLargestDefinition = 16 << 20;  // bytes

fs::path ResourcesOf(const fs::path& inBundle) {
    return inBundle / "Contents/Resources";
}

// The resource files that a bundle's folder of resources holds, the executable's own among them.
std::vector<std::string> ResourceFilesOf(const std::string& inPath) {
    std::vector<std::string> files;
    std::error_code none;
    if (!fs::is_directory(inPath, none)) return {inPath};
    for (const auto& entry : fs::directory_iterator(ResourcesOf(inPath), none))
        if (entry.path().extension() == ".rsrc" && entry.is_regular_file(none))
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

// Of a file without resources nothing is added.
void AddSuites(const std::string& inFile, Suites& ioSuites) {
    std::optional<ResourceFile> file;
    try {
        file.emplace(inFile);
    } catch (const Failure& failure) {
        if (failure.Code() != eofErr) throw;
        return;
    }
    const SInt16 count = Count1Resources(kTerminology);
    for (SInt16 i = 1; i <= count; ++i) {
        const Handle resource = Get1IndResource(kTerminology, i);
        if (resource == nullptr) RefuseResources(inFile, ResError());
        const auto* bytes = reinterpret_cast<const UInt8*>(*resource);
        const Suites suites = ReadTerminology({bytes, size_t(GetHandleSize(resource))});
        ioSuites.insert(ioSuites.end(), suites.begin(), suites.end());
    }
}

std::string Text(CFTypeRef inValue) {
    if (inValue == nullptr || CFGetTypeID(inValue) != CFStringGetTypeID()) return {};
    char text[1024] = "";
    CFStringGetCString(static_cast<CFStringRef>(inValue), text, sizeof text, kCFStringEncodingUTF8);
    return text;
}

// What Info.plist says; empty when it says nothing.
std::string DefinitionNameOf(const std::string& inBundle) {
    const auto* path = reinterpret_cast<const UInt8*>(inBundle.data());
    const CFURLRef url = CFURLCreateFromFileSystemRepresentation(
        nullptr, path, static_cast<CFIndex>(inBundle.size()), true);
    if (url == nullptr) return {};
    const CFBundleRef bundle = CFBundleCreate(nullptr, url);
    CFRelease(url);
    if (bundle == nullptr) return {};
    std::string name =
        Text(CFBundleGetValueForInfoDictionaryKey(bundle, CFSTR("OSAScriptingDefinition")));
    CFRelease(bundle);
    return name;
}

std::string Contents(const fs::path& inFile) {
    std::error_code none;
    if (!fs::is_regular_file(inFile, none))
        throw Failure(inFile.string() + ": there is no such file", fnfErr, kBadSource);
    if (fs::file_size(inFile, none) > kLargestDefinition)
        throw Failure(inFile.string() + ": it is larger than any scripting definition",
                      errAECorruptData);
    std::ifstream file(inFile, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file) throw Failure(inFile.string() + ": it cannot be read", permErr, kBadSource);
    return text;
}

// Those beside a definition; none outside that folder.
class FilesBeside : public DefinitionFiles {
  public:
    explicit FilesBeside(const fs::path& inDefinition)
        : mFolder(fs::weakly_canonical(inDefinition).parent_path()) {}

    std::optional<std::string> Read(const std::string& inReference) override {
        std::error_code none;
        const fs::path file = fs::weakly_canonical(mFolder / inReference, none);
        const bool isBeside = !none && file.parent_path() == mFolder;
        if (!isBeside || !fs::is_regular_file(file, none)) return {};
        return Contents(file);
    }

  private:
    fs::path mFolder;
};

Suites ReadDefinition(const fs::path& inFile, Notes& outNotes) {
    FilesBeside files(inFile);
    return ReadScriptingDefinition(inFile.filename(), Contents(inFile), files, outNotes);
}

// The name may lack the extension, and never leads out of the bundle's resources.
fs::path DefinitionIn(const std::string& inBundle, const std::string& inName) {
    if (inName.find('/') != inName.npos)
        throw Failure(inBundle + ": its Info.plist names a scripting definition elsewhere",
                      errAECorruptData);
    const fs::path file = ResourcesOf(inBundle) / inName;
    std::error_code none;
    return fs::exists(file, none) ? file : fs::path(file.string() + kDefinitionExtension);
}

Suites DefinitionOf(const std::string& inPath, Notes& outNotes) {
    std::error_code none;
    if (fs::path(inPath).extension() == kDefinitionExtension)
        return ReadDefinition(inPath, outNotes);
    if (!fs::is_directory(inPath, none)) return {};
    const std::string name = DefinitionNameOf(inPath);
    return name.empty() ? Suites() : ReadDefinition(DefinitionIn(inPath, name), outNotes);
}

bool MayHoldResources(const std::string& inPath) {
    std::error_code none;
    const auto status = fs::status(inPath, none);
    return fs::is_directory(status) || fs::is_regular_file(status) || !fs::exists(status);
}

}  // namespace

std::optional<Suites> ReadTerminologyOf(const std::string& inPath, Notes& outNotes) {
    const std::string path = fs::absolute(inPath);
    Suites suites;
    if (!MayHoldResources(path)) return {};
    for (const auto& file : ResourceFilesOf(path)) AddSuites(file, suites);
    if (suites.empty()) suites = DefinitionOf(path, outNotes);
    return suites.empty() ? std::nullopt : std::optional(suites);
}

Suites TerminologyOf(const std::string& inApplication, Notes& outNotes) {
    const auto path = FindApplication(inApplication);
    if (!path)
        throw Failure("No application has the signature, name, PID or path '" + inApplication + "'",
                      kLSApplicationNotFoundErr);
    auto suites = ReadTerminologyOf(*path, outNotes);
    if (!suites) throw Failure(inApplication + ": it has no dictionary", resNotFound);
    return *suites;
}

}  // namespace cli
