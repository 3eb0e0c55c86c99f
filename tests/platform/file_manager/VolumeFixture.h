// Folders mounted as volumes for one test each, and catalog calls in one line.
#pragma once

#include <Platform/Platform.h>

#include <vector>

#include "FileFixture.h"
#include "support/PascalString.h"

class VolumeFixture : public FileFixture {
  protected:
    // The volume that most tests work on.
    void SetUp() override {
        FileFixture::SetUp();
        mVolume = Mount("Disk", "Disk", 0);
    }
    void TearDown() override {
        for (const auto number : mMounted) PlatformUnmountFolder(number);
    }
    FSVolumeRefNum Mount(const std::string& inFolder, const char* inName, OptionBits inOptions) {
        FSVolumeRefNum number = 0;
        const auto path = MakeFolder(inFolder);
        EXPECT_EQ(PlatformMountFolderWithOptions(path.c_str(), inName, inOptions, &number), noErr);
        mMounted.push_back(number);
        return number;
    }

    OSErr GetInfo(SInt32 inDirectory, const std::string& inName, CInfoPBRec* outInfo) {
        return GetInfoOn(mVolume, inDirectory, inName, outInfo);
    }
    static OSErr GetInfoOn(FSVolumeRefNum inVolume, SInt32 inDirectory, const std::string& inName,
                           CInfoPBRec* outInfo) {
        PString name(inName);
        *outInfo = {};
        outInfo->hFileInfo.ioNamePtr = const_cast<StringPtr>(ConstStringPtr(name));
        outInfo->hFileInfo.ioVRefNum = inVolume;
        outInfo->hFileInfo.ioDirID = inDirectory;
        const OSErr error = PBGetCatInfoSync(outInfo);
        outInfo->hFileInfo.ioNamePtr = nullptr;
        return error;
    }
    CInfoPBRec Info(SInt32 inDirectory, const std::string& inName) {
        CInfoPBRec info;
        EXPECT_EQ(GetInfo(inDirectory, inName, &info), noErr) << inName;
        return info;
    }
    // The name of the entry, or the error in words.
    std::string Entry(SInt32 inDirectory, SInt16 inIndex) {
        Str255 name = "";
        CInfoPBRec info{};
        info.hFileInfo.ioNamePtr = name;
        info.hFileInfo.ioVRefNum = mVolume;
        info.hFileInfo.ioDirID = inDirectory;
        info.hFileInfo.ioFDirIndex = inIndex;
        const OSErr error = PBGetCatInfoSync(&info);
        return error == noErr ? TextOf(name) : "error " + std::to_string(error);
    }
    std::vector<std::string> Entries(SInt32 inDirectory) {
        std::vector<std::string> names;
        for (SInt16 i = 1;; ++i) {
            const auto name = Entry(inDirectory, i);
            if (name == "error -43") return names;
            names.push_back(name);
            if (name.starts_with("error")) return names;
        }
    }
    SInt32 FolderID(const std::string& inName) { return Info(2, inName).dirInfo.ioDrDirID; }
    bool Exists(const std::string& inName) const {
        return std::filesystem::exists(std::filesystem::symlink_status(Path(inName)));
    }

    FSVolumeRefNum mVolume = 0;
    std::vector<FSVolumeRefNum> mMounted;
};
