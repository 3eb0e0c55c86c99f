// Building bundles and reading what the scripted recorder wrote down.
#include "support/RecorderBundle.h"

#include <cstdlib>
#include <fstream>

#include "vantor/foundation/LException.h"

namespace {

std::string PropertyList(const BundleFacts& inFacts) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<plist version=\"1.0\"><dict>\n";
    const auto add = [&](const char* key, const std::string& value) {
        text += "<key>" + std::string(key) + "</key><string>" + value + "</string>\n";
    };
    add("CFBundleExecutable", "recorder");
    add("CFBundlePackageType", inFacts.type);
    add("CFBundleSignature", inFacts.creator);
    add("CFBundleVersion", inFacts.version);
    if (!inFacts.name.empty()) add("CFBundleName", inFacts.name);
    if (inFacts.backgroundOnly) text += "<key>LSBackgroundOnly</key><true/>\n";
    return text + "</dict></plist>\n";
}

// A hard link is enough: the platform tells programs apart by the path they were started from.
void PlaceProgram(const std::filesystem::path& inPlace) {
    std::error_code error;
    std::filesystem::remove(inPlace);
    std::filesystem::create_hard_link(SCRIPTED_RECORDER, inPlace, error);
    if (error) std::filesystem::copy_file(SCRIPTED_RECORDER, inPlace);
}

}  // namespace

std::filesystem::path ApplicationsFolder() {
    return std::filesystem::path(std::getenv("XDG_DATA_HOME")) / "vantor" / "Applications";
}

RecorderBundle::RecorderBundle(const BundleFacts& inFacts)
    : mPath(ApplicationsFolder() / inFacts.folder), mResources(mPath / "Contents" / "Resources") {
    std::filesystem::remove_all(mPath);
    std::filesystem::create_directories(mResources);
    std::filesystem::create_directories(mPath / "Contents" / "Linux");
    PlaceProgram(mPath / "Contents" / "Linux" / "recorder");
    Describe(inFacts);
}

FSSpec RecorderBundle::Spec() const {
    FSRef ref;
    FSSpec spec;
    const auto path = reinterpret_cast<const UInt8*>(mPath.c_str());
    ThrowIfError(FSPathMakeRef(path, &ref, nullptr));
    ThrowIfError(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr));
    return spec;
}

void RecorderBundle::Describe(const BundleFacts& inFacts) const {
    std::ofstream(mPath / "Contents" / "Info.plist") << PropertyList(inFacts);
    std::ofstream(mPath / "Contents" / "PkgInfo") << inFacts.type << inFacts.creator;
}

void RecorderBundle::Script(const std::string& inLines) const {
    std::ofstream(mResources / "script") << inLines;
}

std::vector<std::string> RecorderBundle::AllEvents() const {
    std::vector<std::string> events;
    std::ifstream record(mResources / "events");
    for (std::string line; std::getline(record, line);) events.push_back(line);
    return events;
}

std::vector<std::string> RecorderBundle::Events() const {
    std::vector<std::string> events;
    for (const std::string& line : AllEvents()) {
        if (!line.starts_with("aevt/oapp") && !line.starts_with("aevt/rapp")) {
            events.push_back(line);
        }
    }
    return events;
}

void RecorderBundle::Forget() const {
    std::filesystem::remove(mResources / "events");
}
