// A folder of its own for each test, specs and references in one line, and another process to ask.
#pragma once

#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/TemporaryHome.h"

class FileFixture : public testing::Test {
  protected:
    void SetUp() override {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        mFolder = Home().Root() / "files" / test->name();
        std::filesystem::create_directories(mFolder);
        mFolder = std::filesystem::canonical(mFolder);
    }

    static TemporaryHome& Home() {
        static TemporaryHome sHome;
        return sHome;
    }

    std::string Path(const std::string& inName) const { return (mFolder / inName).string(); }
    std::string Write(const std::string& inName, const std::string& inText = "x") const {
        std::ofstream(Path(inName), std::ios::binary) << inText;
        return Path(inName);
    }
    std::string MakeFolder(const std::string& inName) const {
        std::filesystem::create_directories(Path(inName));
        return Path(inName);
    }

    static OSStatus RefOf(const std::string& inPath, FSRef* outRef) {
        return FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath.c_str()), outRef, nullptr);
    }
    static FSSpec SpecOf(const std::string& inPath) {
        FSRef ref;
        FSSpec spec{};
        EXPECT_EQ(RefOf(inPath, &ref), noErr) << inPath;
        EXPECT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, &spec, nullptr), noErr);
        return spec;
    }
    // The path, or the error in words.
    static std::string PathOf(const FSSpec& inSpec) {
        FSRef ref;
        const OSErr error = FSpMakeFSRef(&inSpec, &ref);
        return error == noErr ? PathOf(ref) : "error " + std::to_string(error);
    }
    static std::string PathOf(const FSRef& inRef) {
        UInt8 path[4096];
        const OSStatus error = FSRefMakePath(&inRef, path, sizeof path);
        return error == noErr ? reinterpret_cast<char*>(path) : "error " + std::to_string(error);
    }
    static FSCatalogInfo InfoOf(const std::string& inPath) {
        FSRef ref;
        FSCatalogInfo info{};
        EXPECT_EQ(RefOf(inPath, &ref), noErr);
        EXPECT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoGettableInfo, &info, nullptr, nullptr, nullptr),
                  noErr);
        return info;
    }
    static SInt32 NumberOf(const std::string& inFolder) { return SInt32(InfoOf(inFolder).nodeID); }

    static std::string NameOf(const FSSpec& inSpec) {
        return {reinterpret_cast<const char*>(inSpec.name) + 1, inSpec.name[0]};
    }
    static std::string Pascal(const std::string& inText) { return char(inText.size()) + inText; }
    static OSErr MakeSpec(FSVolumeRefNum inVolume, SInt32 inFolder, const std::string& inName,
                          FSSpec* outSpec) {
        const auto name = Pascal(inName);
        return FSMakeFSSpec(inVolume, inFolder, reinterpret_cast<const UInt8*>(name.c_str()),
                            outSpec);
    }

    // One line from the helper process, without its end.
    static std::string Ask(const std::string& inArguments, const std::string& inEnvironment = "") {
        const auto program =
            std::filesystem::canonical("/proc/self/exe").parent_path() / "file_peer";
        const auto command = inEnvironment + ' ' + program.string() + ' ' + inArguments;
        FILE* pipe = popen(command.c_str(), "r");
        char line[8192] = "";
        EXPECT_NE(std::fgets(line, sizeof line, pipe), nullptr);
        EXPECT_EQ(pclose(pipe), 0);
        return std::string(line, std::strcspn(line, "\n"));
    }
    static std::string Described(const FSSpec& inSpec) {
        std::string text =
            std::to_string(inSpec.vRefNum) + ' ' + std::to_string(inSpec.parID) + ' ';
        char digits[3];
        for (int i = 1; i <= inSpec.name[0]; ++i) {
            std::snprintf(digits, sizeof digits, "%02x", inSpec.name[i]);
            text += digits;
        }
        return text;
    }

    std::filesystem::path mFolder;
};
