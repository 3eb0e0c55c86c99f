// Bundles on disk for the tests: a folder with Info.plist, PkgInfo and a program.
#pragma once

#include <filesystem>
#include <map>
#include <string>

struct BundleText {
    std::string name = "Probe";
    std::string creator = "Prob";
    std::string type = "APPL";
    std::string version = "1.0";
    std::string identifier = "example.probe";
    std::string more;     // further keys and values for the Info.plist, as XML
    std::string program;  // a script, or the path of a program to copy; empty: none
    std::string programFolder = "Linux";
};

// Writes <inFolder>/<inFileName>, the folders above it too, over what may be there.
std::filesystem::path MakeBundle(const std::filesystem::path& inFolder,
                                 const std::string& inFileName, const BundleText& inText);

// Writes an executable file: a script, or the copy of a program.
void MakeProgram(const std::filesystem::path& inPath, const std::string& inProgram);
