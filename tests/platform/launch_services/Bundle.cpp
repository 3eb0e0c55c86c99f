// Owns writing bundles.
#include "platform/launch_services/Bundle.h"

#include <fstream>

namespace fs = std::filesystem;

namespace {

void WriteFile(const fs::path& inPath, const std::string& inText) {
    std::ofstream(inPath, std::ios::binary | std::ios::trunc) << inText;
}

std::string Entry(const std::string& inKey, const std::string& inValue) {
    return "<key>" + inKey + "</key><string>" + inValue + "</string>\n";
}

std::string PropertyList(const BundleText& inText) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>\n" +
           Entry("CFBundleName", inText.name) + Entry("CFBundleExecutable", "program") +
           Entry("CFBundleIdentifier", inText.identifier) +
           Entry("CFBundlePackageType", inText.type) + Entry("CFBundleSignature", inText.creator) +
           Entry("CFBundleVersion", inText.version) + inText.more + "</dict></plist>\n";
}

}  // namespace

void MakeProgram(const fs::path& inPath, const std::string& inProgram) {
    if (inProgram.starts_with('/'))
        fs::copy_file(inProgram, inPath, fs::copy_options::overwrite_existing);
    else
        WriteFile(inPath, inProgram);
    fs::permissions(inPath, fs::perms::owner_all);
}

fs::path MakeBundle(const fs::path& inFolder, const std::string& inFileName,
                    const BundleText& inText) {
    const fs::path bundle = inFolder / inFileName;
    const fs::path programs = bundle / "Contents" / inText.programFolder;
    fs::create_directories(programs);
    WriteFile(bundle / "Contents/Info.plist", PropertyList(inText));
    WriteFile(bundle / "Contents/PkgInfo", inText.type + inText.creator);
    if (!inText.program.empty()) MakeProgram(programs / "program", inText.program);
    return bundle;
}
