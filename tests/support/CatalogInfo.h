// Catalog records of a test's files, read past the library.
#pragma once

#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <cstring>

// By a file spec, or by a folder's own ID.
inline CInfoPBRec InfoOf(const FSSpec& inSpec) {
    CInfoPBRec info = {};
    Str63 name;
    std::memcpy(name, inSpec.name, sizeof name);
    info.hFileInfo.ioNamePtr = name;
    info.hFileInfo.ioVRefNum = inSpec.vRefNum;
    info.hFileInfo.ioDirID = inSpec.parID;
    EXPECT_EQ(PBGetCatInfoSync(&info), noErr);
    info.hFileInfo.ioNamePtr = nullptr;
    return info;
}

inline CInfoPBRec InfoOf(FSVolumeRefNum inVolume, SInt32 inDirID) {
    CInfoPBRec info = {};
    info.dirInfo.ioFDirIndex = -1;
    info.dirInfo.ioVRefNum = inVolume;
    info.dirInfo.ioDrDirID = inDirID;
    EXPECT_EQ(PBGetCatInfoSync(&info), noErr);
    return info;
}

inline UInt16 FlagsOf(const FSSpec& inSpec) {
    return InfoOf(inSpec).hFileInfo.ioFlFndrInfo.fdFlags;
}

// Writes back what `inChange` makes of an object's record.
template <typename Change>
void ChangeInfo(const FSSpec& inSpec, Change inChange) {
    CInfoPBRec info = InfoOf(inSpec);
    Str63 name;
    std::memcpy(name, inSpec.name, sizeof name);
    info.hFileInfo.ioNamePtr = name;
    info.hFileInfo.ioDirID = inSpec.parID;
    inChange(info.hFileInfo);
    EXPECT_EQ(PBSetCatInfoSync(&info), noErr);
}

// Sets an object's modification date.
inline void SetDate(const FSSpec& inSpec, UInt32 inDate) {
    ChangeInfo(inSpec, [&](HFileInfo& ioInfo) { ioInfo.ioFlMdDat = inDate; });
}

inline UInt32 DateOf(const FSSpec& inSpec) {
    return InfoOf(inSpec).hFileInfo.ioFlMdDat;
}
