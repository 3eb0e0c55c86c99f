// Finding the folder that holds an object.
#include "vantor/files/Locations.h"

#include <algorithm>

#include "vantor/files/CatalogEntry.h"
#include "vantor/files/VolumeInfo.h"

namespace {

// A path such as "A::": its folder is named by where it climbs from.
bool Climbs(ConstStr255Param inName) {
    if (inName == nullptr || inName[0] <= 1) return false;
    return inName[inName[0]] == ':' && inName[inName[0] - 1] == ':';
}

// The name and parent of the folder with an ID.
OSErr ReadNameAndParent(FSVolumeRefNum inVRefNum, SInt32 inDirID, StringPtr outName,
                        SInt32* outParentID) {
    CInfoPBRec info = {};
    info.dirInfo.ioNamePtr = outName;
    info.dirInfo.ioVRefNum = inVRefNum;
    info.dirInfo.ioDrDirID = inDirID;
    info.dirInfo.ioFDirIndex = -1;
    const OSErr err = PBGetCatInfoSync(&info);
    if (err == noErr) *outParentID = info.dirInfo.ioDrParID;
    return err;
}

// A path without the last name and the colon behind it.
void CutLastName(ConstStr255Param inPath, ConstStr255Param inName, StringPtr outRest) {
    const int colon = inPath[inPath[0]] == ':' ? 1 : 0;
    outRest[0] = UInt8(inPath[0] - inName[0] - colon);
    std::copy_n(&inPath[1], outRest[0], &outRest[1]);
}

// Where an object that is missing would be: dirNFErr when it could not be anywhere.
OSErr LocateMissing(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inPath,
                    SInt32* outParentID, StringPtr outName) {
    if (GetFilenameFromPathname(inPath, outName) != noErr) return dirNFErr;
    Str255 rest;
    CutLastName(inPath, outName, rest);
    CatalogEntry parent;
    if (parent.Read(inVRefNum, inDirID, rest) != noErr || !parent.IsFolder()) return dirNFErr;
    *outParentID = parent.info.dirInfo.ioDrDirID;
    return fnfErr;
}

OSErr LocateFile(const CatalogEntry& inEntry, ConstStr255Param inPath, SInt32* outParentID,
                 StringPtr outName) {
    *outParentID = inEntry.ParentID();
    return GetFilenameFromPathname(inPath, outName);
}

}  // namespace

OSErr GetDirName(FSVolumeRefNum inVRefNum, SInt32 inDirID, StringPtr outName) {
    if (outName == nullptr) return paramErr;
    SInt32 parentID;
    return ReadNameAndParent(inVRefNum, inDirID, outName, &parentID);
}

OSErr GetParentID(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                  SInt32* outParentID) {
    CatalogEntry entry;
    OSErr err = entry.Read(inVRefNum, inDirID, inName);
    if (err == noErr && entry.IsFolder() && Climbs(inName)) {
        // The first answer does not tell the true parent of a folder that was climbed to.
        FSVolumeRefNum volume;
        err = DetermineVRefNum(inName, inVRefNum, &volume);
        if (err == noErr) err = entry.ReadFolder(volume, entry.info.dirInfo.ioDrDirID);
    }
    if (err == noErr) *outParentID = entry.ParentID();
    return err;
}

OSErr GetObjectLocation(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inPath,
                        FSVolumeRefNum* outVRefNum, SInt32* outParentID, StringPtr outName,
                        Boolean* outIsDirectory) {
    *outVRefNum = 0;
    *outParentID = 0;
    outName[0] = 0;
    OSErr err = DetermineVRefNum(inPath, inVRefNum, outVRefNum);
    if (err != noErr) return err;
    CatalogEntry entry;
    err = entry.Read(inVRefNum, inDirID, inPath);
    *outIsDirectory = err == noErr && entry.IsFolder();
    if (err == fnfErr) return LocateMissing(inVRefNum, inDirID, inPath, outParentID, outName);
    if (err != noErr) return err;
    if (!entry.IsFolder()) return LocateFile(entry, inPath, outParentID, outName);
    return ReadNameAndParent(*outVRefNum, entry.info.dirInfo.ioDrDirID, outName, outParentID);
}
