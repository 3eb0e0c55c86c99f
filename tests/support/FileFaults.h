// File, desktop and resource calls that a test program answers itself: each hook that is set takes
// the place of the platform's call, which stays reachable through REAL_CALL. Linking FileFaults.cpp
// puts the hooks in front of the platform.
#pragma once

#include <Carbon/Carbon.h>

#include <functional>

struct FileFaults {
    std::function<OSErr(HParmBlkPtr)> getVolumeInfo;                 // PBHGetVInfoSync
    std::function<OSErr(HParmBlkPtr)> getVolumeParameters;           // PBHGetVolParmsSync
    std::function<OSErr(HParmBlkPtr)> getFileInfo;                   // PBHGetFInfoSync
    std::function<OSErr(CInfoPBPtr)> getCatalogInfo;                 // PBGetCatInfoSync
    std::function<OSErr(DTPBPtr)> openDatabaseInforming;             // PBDTOpenInform
    std::function<OSErr(DTPBPtr)> openDatabase;                      // PBDTGetPath
    std::function<OSErr(DTPBPtr)> getApplication;                    // PBDTGetAPPLSync
    std::function<OSErr(CSParamPtr)> searchCatalog;                  // PBCatSearchSync
    std::function<OSErr(ParmBlkPtr)> read, write;                    // PBReadSync, PBWriteSync
    std::function<OSErr(SInt16, SInt32*, const void*)> writeAtMark;  // FSWrite
    std::function<OSErr(SInt16, SInt32)> setLength;                  // SetEOF
    std::function<SInt16(const FSSpec*, SignedByte)> openResources;  // FSpOpenResFile
    std::function<OSErr(SInt16)> close;                              // FSClose
    std::function<OSErr(ConstStr63Param, FSVolumeRefNum)> flush;     // FlushVol
    std::function<Ptr(Size)> newPointer;                             // NewPtr
};

extern FileFaults gFileFaults;

// Clears all hooks at the end of a test.
struct StFileFaults {
    ~StFileFaults() { gFileFaults = {}; }
};
