// A volume of its own for each test, and catalog searches in one line.
#pragma once

#include <Platform/Platform.h>

#include <set>

#include "file_manager/metadata/metadata.h"
#include "platform/file_manager/FileFixture.h"

// One search and its record, which may be run again to go on.
struct Search {
    explicit Search(FSVolumeRefNum inVolume, SInt32 inBits = 0, SInt32 inRoom = 100)
        : matches(size_t(inRoom)) {
        block.ioVRefNum = inVolume;
        block.ioMatchPtr = matches.data();
        block.ioReqMatchCount = inRoom;
        block.ioSearchBits = inBits;
        block.ioSearchInfo1 = &least;
        block.ioSearchInfo2 = &most;
    }
    Search(const Search&) = delete;
    Search& operator=(const Search&) = delete;

    Search& Name(const std::string& inName) {
        name[0] = UInt8(inName.size());
        std::memcpy(name + 1, inName.data(), inName.size());
        least.hFileInfo.ioNamePtr = name;
        return *this;
    }
    Search& OnlyFiles() { return Kind(0); }
    Search& OnlyFolders() { return Kind(kioFlAttribDirMask); }
    Search& Kind(SInt8 inValue) {
        block.ioSearchBits |= fsSBFlAttrib;
        least.hFileInfo.ioFlAttrib = SInt8(least.hFileInfo.ioFlAttrib | inValue);
        most.hFileInfo.ioFlAttrib = SInt8(most.hFileInfo.ioFlAttrib | kioFlAttribDirMask);
        return *this;
    }
    Search& Signature(OSType inCreator, OSType inType) {
        block.ioSearchBits |= fsSBFlFndrInfo;
        least.hFileInfo.ioFlFndrInfo.fdCreator = inCreator;
        least.hFileInfo.ioFlFndrInfo.fdType = inType;
        most.hFileInfo.ioFlFndrInfo.fdCreator = inCreator ? 0xFFFFFFFF : 0;
        most.hFileInfo.ioFlFndrInfo.fdType = inType ? 0xFFFFFFFF : 0;
        return *this;
    }

    OSErr Run() {
        const OSErr error = PBCatSearchSync(&block);
        EXPECT_EQ(block.ioResult, error);
        return error;
    }
    // The names found by one call, and the result in words unless everything was searched.
    std::set<std::string> Names() {
        const OSErr error = Run();
        std::set<std::string> names = Found();
        if (error != eofErr) names.insert("result " + std::to_string(error));
        return names;
    }
    std::set<std::string> Found() const {
        std::set<std::string> names;
        for (SInt32 i = 0; i < block.ioActMatchCount; ++i) {
            const auto& spec = matches[size_t(i)];
            names.insert({reinterpret_cast<const char*>(spec.name) + 1, spec.name[0]});
        }
        return names;
    }
    // Begins anew.
    Search& Again() {
        block.ioCatPosition = {};
        return *this;
    }

    std::vector<FSSpec> matches;
    Str255 name = "";
    CInfoPBRec least{}, most{};
    CSParam block{};
};

class SearchFixture : public FileFixture {
  protected:
    using Strings = std::set<std::string>;

    void SetUp() override {
        FileFixture::SetUp();
        MakeFolder("disk");
        ASSERT_EQ(PlatformMountFolder(Path("disk").c_str(), "Disk", &mVolume), noErr);
    }
    void TearDown() override { PlatformUnmountFolder(mVolume); }

    static void Sign(const std::string& inPath, OSType inCreator, OSType inType) {
        const auto change = [&](carbon::Metadata* ioMetadata) {
            FInfo info{};
            info.fdCreator = inCreator;
            info.fdType = inType;
            std::memcpy(ioMetadata->finderInfo, &info, sizeof info);
        };
        ASSERT_EQ(carbon::ChangeMetadata(inPath, change), noErr);
    }
    static void Lock(const std::string& inPath) {
        const auto change = [](carbon::Metadata* ioMetadata) { ioMetadata->facts.isLocked = true; };
        ASSERT_EQ(carbon::ChangeMetadata(inPath, change), noErr);
    }
    static std::filesystem::path IndexFile() {
        std::filesystem::path newest;
        for (const auto& each :
             std::filesystem::directory_iterator(Home().Root() / "state/vantor/volumes")) {
            if (!each.path().string().ends_with(".search.db")) continue;
            if (newest.empty() || last_write_time(each) > last_write_time(newest)) newest = each;
        }
        return newest;
    }

    FSVolumeRefNum mVolume = 0;
};
