// Where a bundle's files are.
#pragma once

#include <string>
#include <vector>

namespace carbon {

struct BundleLayout {
    bool isBundle = false;    // has one of the folders that make a bundle
    std::string support;      // the folder of Info.plist
    std::string resources;    // the folder of the .lproj folders
    std::string infoFile;     // Info.plist as it is really called; empty without one
    std::string packageFile;  // PkgInfo; empty without one
};

BundleLayout LayoutOfBundle(const std::string& inPath);

// The program file called inName, or empty.
std::string ExecutableOfBundle(const std::string& inPath, const std::string& inName);

// The folder's name without its extension, and the extension with its period.
std::string NameOfBundle(const std::string& inPath);
std::string ExtensionOfBundle(const std::string& inPath);

// Where a new file could change what LayoutOfBundle and ExecutableOfBundle answer.
std::vector<std::string> FoldersOfBundle(const std::string& inPath);

bool IsFolder(const std::string& inPath);
bool IsPlainFile(const std::string& inPath);

}  // namespace carbon
