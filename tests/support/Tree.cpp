// Owns the making and comparing of trees.
#include "support/Tree.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <random>

namespace fs = std::filesystem;

void WriteFile(const fs::path& inPath, size_t inBytes, unsigned inSeed) {
    std::minstd_rand random(inSeed + 1);
    std::string content(inBytes, '\0');
    for (char& byte : content) byte = static_cast<char>(random() >> 8);
    std::ofstream(inPath, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
}

void WriteManyFiles(const fs::path& inFolder, int inCount, size_t inMostBytes) {
    for (int i = 0; i < inCount; ++i) {
        const auto folder = inFolder / ("folder " + std::to_string(i / 100));
        if (i % 100 == 0) fs::create_directories(folder);
        const auto seed = static_cast<unsigned>(i);
        WriteFile(folder / ("file " + std::to_string(i) + ".txt"), seed * 2654435761u % inMostBytes,
                  seed);
    }
}

namespace {

void WriteScripts(const fs::path& inFolder) {
    for (const char* name :
         {"Grüße.txt", "日本語.txt", "Ελληνικά.txt", "русский.txt", "עברית.txt", "emoji 🎵.txt",
          "decomposed e\u0301.txt", "colon: and question?.txt", "a\\backslash.txt"})
        WriteFile(inFolder / name, 100, 7);
}

void WriteLinks(const fs::path& inFolder) {
    fs::create_symlink("Grüße.txt", inFolder / "link to file");
    fs::create_symlink("nowhere/at all", inFolder / "dangling link");
    fs::create_symlink("case", inFolder / "link to folder");
}

}  // namespace

void WriteAwkwardNames(const fs::path& inFolder) {
    fs::create_directories(inFolder / "case");
    fs::create_directories(inFolder / "empty folder");
    WriteFile(inFolder / "empty", 0);
    WriteFile(inFolder / std::string(255, 'n'), 10);
    std::string longName(250, 'n');
    longName += ".long";  // not +, at which an optimising gcc 12 sees a fault that is none
    WriteFile(inFolder / longName, 11);
    for (const char* name : {"Readme", "README", "readme"})
        WriteFile(inFolder / "case" / name, 50, static_cast<unsigned>(name[1]));
    fs::path deep = inFolder / "deep";
    for (int i = 0; i < 30; ++i) deep /= "level " + std::to_string(i);
    fs::create_directories(deep);
    WriteFile(deep / "bottom.txt", 77);
    WriteScripts(inFolder);
    WriteLinks(inFolder);
}

void WriteSparseFile(const fs::path& inPath, long long inBytes) {
    const int fd = open(inPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const char mark[] = "not a hole";
    for (const long long at : {0LL, inBytes / 2, inBytes - static_cast<long long>(sizeof mark)})
        if (pwrite(fd, mark, sizeof mark, at) < 0) break;
    close(fd);
}

std::vector<std::string> NamesIn(const fs::path& inFolder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(inFolder))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

namespace {

bool SameContent(const fs::path& inLeft, const fs::path& inRight) {
    std::ifstream left(inLeft, std::ios::binary), right(inRight, std::ios::binary);
    std::vector<char> a(1 << 20), b(1 << 20);
    while (left && right) {
        left.read(a.data(), static_cast<std::streamsize>(a.size()));
        right.read(b.data(), static_cast<std::streamsize>(b.size()));
        if (left.gcount() != right.gcount()) return false;
        if (!std::equal(a.begin(), a.begin() + left.gcount(), b.begin())) return false;
    }
    return left.eof() == right.eof();
}

void Compare(const fs::path& inLeft, const fs::path& inRight,
             std::vector<std::string>& ioDifferences);

void CompareFolders(const fs::path& inLeft, const fs::path& inRight,
                    std::vector<std::string>& ioDifferences) {
    const auto left = NamesIn(inLeft), right = NamesIn(inRight);
    for (const auto& name : left)
        if (std::binary_search(right.begin(), right.end(), name))
            Compare(inLeft / name, inRight / name, ioDifferences);
        else
            ioDifferences.push_back("missing: " + (inLeft / name).string());
    for (const auto& name : right)
        if (!std::binary_search(left.begin(), left.end(), name))
            ioDifferences.push_back("extra: " + (inRight / name).string());
}

void Compare(const fs::path& inLeft, const fs::path& inRight,
             std::vector<std::string>& ioDifferences) {
    const auto left = fs::symlink_status(inLeft).type(), right = fs::symlink_status(inRight).type();
    if (left != right)
        ioDifferences.push_back("another kind: " + inLeft.string());
    else if (left == fs::file_type::directory)
        CompareFolders(inLeft, inRight, ioDifferences);
    else if (left == fs::file_type::symlink &&
             fs::read_symlink(inLeft) != fs::read_symlink(inRight))
        ioDifferences.push_back("another target: " + inLeft.string());
    else if (left == fs::file_type::regular && !SameContent(inLeft, inRight))
        ioDifferences.push_back("another content: " + inLeft.string());
}

}  // namespace

std::vector<std::string> DifferencesOf(const fs::path& inLeft, const fs::path& inRight) {
    std::vector<std::string> differences;
    Compare(inLeft, inRight, differences);
    return differences;
}
