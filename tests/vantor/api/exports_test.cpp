// What libvantor.so shows: the calls of Vantor.h by plain names and one by a type-encoded name, and
// beside them only what the library's headers declare. What those headers include.
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "support/Command.h"

namespace {

using Names = std::set<std::string>;

Names DefinedSymbols() {
    const CommandResult result =
        RunCommand({"nm", "--dynamic", "--defined-only", "--format=posix", VANTOR_LIBRARY});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    Names names;
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);) names.insert(line.substr(0, line.find(' ')));
    return names;
}

std::string Demangled(const std::string& inName) {
    const CommandResult result = RunCommand({"c++filt", inName});
    return result.output.substr(0, result.output.find('\n'));
}

std::vector<std::filesystem::path> Headers() {
    std::vector<std::filesystem::path> headers;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(VANTOR_SOURCES)) {
        if (entry.path().extension() == ".h") headers.push_back(entry.path());
    }
    EXPECT_GT(headers.size(), 10u);
    return headers;
}

std::string ContentsOf(const std::filesystem::path& inPath) {
    std::ostringstream text;
    text << std::ifstream(inPath).rdbuf();
    return text.str();
}

// Every word of the headers: what is exported must be among them.
Names DeclaredWords() {
    Names words;
    for (const auto& header : Headers()) {
        std::string word;
        for (const char c : ContentsOf(header)) {
            if (std::isalnum(static_cast<unsigned char>(c)) || c == '_') {
                word += c;
            } else if (!word.empty()) {
                words.insert(word);
                word.clear();
            }
        }
    }
    return words;
}

// What a file includes, with the sign that opens each name.
std::vector<std::string> IncludesOf(const std::filesystem::path& inPath) {
    const std::string directive = "#include ";
    std::vector<std::string> names;
    std::ifstream file(inPath);
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with(directive)) continue;
        names.push_back(line.substr(directive.size(), line.size() - directive.size() - 1));
    }
    return names;
}

bool MayBeIncluded(const std::string& inName) {
    const bool standard = inName.find_first_of("./") == std::string::npos;
    return inName.starts_with("\"vantor/") || inName == "<Carbon/Carbon.h" ||
           inName == "<CoreFoundation/CoreFoundation.h" || standard;
}

// The names of a symbol, outermost first: class, member.
std::vector<std::string> PartsOf(std::string inDemangled) {
    for (const std::string table : {"vtable for ", "typeinfo name for ", "typeinfo for "}) {
        if (inDemangled.starts_with(table)) inDemangled.erase(0, table.size());
    }
    inDemangled = inDemangled.substr(0, inDemangled.find('('));
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t end; (end = inDemangled.find("::", start)) != std::string::npos;
         start = end + 2) {
        parts.push_back(inDemangled.substr(start, end - start));
    }
    parts.push_back(inDemangled.substr(start));
    for (std::string& part : parts) {
        if (part.starts_with("~")) part.erase(0, 1);
        if (part.starts_with("operator")) part = "operator";
    }
    return parts;
}

const Names kPlainNames = {"VantorBundleInit",
                           "VantorInitiateSession",
                           "VantorTerminateSession",
                           "VantorIsSessionInitiated",
                           "VantorGetMirelProcessSerialNumber",
                           "VantorGetMirelPath",
                           "VantorIsMirelRunning",
                           "VantorIsMirelFound",
                           "VantorGetServerMode",
                           "VantorSetServerMode",
                           "VantorGetSimulationMode",
                           "VantorSetSimulationMode",
                           "VantorGetStatusCode",
                           "VantorGetStatusText",
                           "VantorMakeNewDisc",
                           "VantorAddFiles",
                           "VantorIsMirelBusy",
                           "VantorWriteDisc",
                           "VantorWriteDiscWithOptions",
                           "VantorBringMirelToFront",
                           "VantorGetDiscSize",
                           "VantorGetMediaInfo",
                           "VantorMediaSettingInfo",
                           "VantorRequestBlankDisc",
                           "VantorEjectDisc"};
const std::string kTypeEncoded = "_Z19VantorSetAEIdleProcPFhP11EventRecordPiPP15OpaqueRgnHandleE";

TEST(Exports, AreTheHostsCallsByPlainNamesAndOneByATypeEncodedName) {
    Names found;
    for (const std::string& name : DefinedSymbols()) {
        if (name.starts_with("Vantor")) found.insert(name);
        if (name.find("VantorSetAEIdleProc") != std::string::npos) found.insert(name);
    }
    Names expected = kPlainNames;
    expected.insert(kTypeEncoded);
    EXPECT_EQ(found, expected);
}

TEST(Exports, AreDeclaredInTheHeaders) {
    const Names words = DeclaredWords();
    for (const std::string& name : DefinedSymbols()) {
        if (name.starts_with("__asan") || name.starts_with("__odr_asan"))
            continue;  // the checker's
        for (const std::string& part : PartsOf(Demangled(name))) {
            EXPECT_TRUE(words.contains(part)) << name;
        }
    }
}

TEST(Sources, IncludeThePlatformsTwoTheStandardLibraryAndEachOther) {
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(VANTOR_SOURCES)) {
        const auto extension = entry.path().extension();
        if (extension != ".h" && extension != ".cpp") continue;
        ++files;
        for (const std::string& name : IncludesOf(entry.path())) {
            EXPECT_TRUE(MayBeIncluded(name)) << entry.path() << " includes " << name;
        }
    }
    EXPECT_GT(files, 30);
}

}  // namespace
