// Folders full of files that are hard on a disc format, and their comparison.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

// Writes a file with content that depends on `inSeed` only.
void WriteFile(const std::filesystem::path& inPath, size_t inBytes, unsigned inSeed = 1);

// `inCount` files of up to `inMostBytes` in folders of 100.
void WriteManyFiles(const std::filesystem::path& inFolder, int inCount, size_t inMostBytes);

// Empty files and folders, names of 255 bytes, names in several scripts, names that differ only in
// case, a tree of 30 folders, symbolic links (good, dangling, to a folder).
void WriteAwkwardNames(const std::filesystem::path& inFolder);

// A file of that length made of holes, with a few bytes written at its start, its middle and its
// end.
void WriteSparseFile(const std::filesystem::path& inPath, long long inBytes);

// Every difference between two trees, one line each: names, kinds, link targets, contents.
std::vector<std::string> DifferencesOf(const std::filesystem::path& inLeft,
                                       const std::filesystem::path& inRight);

// The names in a folder, sorted, hidden ones too.
std::vector<std::string> NamesIn(const std::filesystem::path& inFolder);
