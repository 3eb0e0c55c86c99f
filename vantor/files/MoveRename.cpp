// Moving and renaming at once, or by way of the temporary items.
#include "vantor/files/MoveRename.h"

#include "vantor/files/Locations.h"
#include "vantor/files/VolumeInfo.h"
#include "vantor/files/VolumeParameters.h"

namespace {

constexpr int kMostRetries = 64;

// The next name to try: only the first character changes, which is never a colon.
void MakeNextName(StringPtr ioName) {
    ++ioName[1];
    if (ioName[1] == ':') ++ioName[1];
}

OSErr MakeUniqueFolder(FSVolumeRefNum inVolume, SInt32 inParentID, SInt32* outDirID) {
    Str255 name;
    NumToString(SInt32(TickCount()), name);
    OSErr err = DirCreate(inVolume, inParentID, name, outDirID);
    for (int retries = 0; err == dupFNErr && retries < kMostRetries; ++retries) {
        MakeNextName(name);
        err = DirCreate(inVolume, inParentID, name, outDirID);
    }
    return err;
}

// An empty folder of our own among the temporary items of a volume.
class StTemporaryFolder {
  public:
    explicit StTemporaryFolder(FSVolumeRefNum inVolume) {
        SInt32 parentID = 0;
        mError = FindFolder(inVolume, kTemporaryFolderType, kCreateFolder, &mVolume, &parentID);
        if (mError == noErr) mError = MakeUniqueFolder(mVolume, parentID, &mDirID);
    }
    ~StTemporaryFolder() {
        if (mError == noErr) HDelete(mVolume, mDirID, nullptr);
    }
    StTemporaryFolder(const StTemporaryFolder&) = delete;
    StTemporaryFolder& operator=(const StTemporaryFolder&) = delete;

    OSErr Error() const { return mError; }
    SInt32 DirID() const { return mDirID; }

  private:
    FSVolumeRefNum mVolume = 0;
    SInt32 mDirID = 0;
    OSErr mError;
};

struct Destination {
    SInt32 dirID;
    ConstStr255Param path, newName;
};

// Renames what is in the temporary folder and moves it on; after an error it is there as before.
OSErr RenameAndMove(FSVolumeRefNum inVolume, SInt32 inTemporaryID, ConstStr255Param inName,
                    const Destination& inTo) {
    OSErr err = HRename(inVolume, inTemporaryID, inName, inTo.newName);
    if (err != noErr) return err;
    err = CatMove(inVolume, inTemporaryID, inTo.newName, inTo.dirID, inTo.path);
    if (err != noErr) HRename(inVolume, inTemporaryID, inTo.newName, inName);
    return err;
}

OSErr MoveThroughTemporaryItems(FSVolumeRefNum inVolume, SInt32 inParentID, ConstStr255Param inName,
                                const Destination& inTo) {
    const StTemporaryFolder temporary(inVolume);
    if (temporary.Error() != noErr) return temporary.Error();
    OSErr err = CatMove(inVolume, inParentID, inName, temporary.DirID(), nullptr);
    if (err != noErr) return err;
    err = RenameAndMove(inVolume, temporary.DirID(), inName, inTo);
    if (err != noErr) CatMove(inVolume, temporary.DirID(), inName, inParentID, nullptr);
    return err;
}

OSErr Emulate(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
              const Destination& inTo) {
    FSVolumeRefNum volume;
    SInt32 parentID;
    Str255 name;
    Boolean isFolder;
    const OSErr err =
        GetObjectLocation(inVRefNum, inDirID, inName, &volume, &parentID, name, &isFolder);
    return err == noErr ? MoveThroughTemporaryItems(volume, parentID, name, inTo) : err;
}

}  // namespace

OSErr HMoveRename(FSVolumeRefNum inVRefNum, SInt32 inSourceDirID, ConstStr255Param inSourceName,
                  SInt32 inDestinationDirID, ConstStr255Param inDestinationPath,
                  ConstStr255Param inNewName) {
    HParamBlockRec block = {};
    block.copyParam.ioNamePtr = const_cast<StringPtr>(inSourceName);
    block.copyParam.ioVRefNum = inVRefNum;
    block.copyParam.ioDirID = inSourceDirID;
    block.copyParam.ioNewDirID = inDestinationDirID;
    block.copyParam.ioNewName = const_cast<StringPtr>(inDestinationPath);
    block.copyParam.ioCopyName = const_cast<StringPtr>(inNewName);
    return PBHMoveRenameSync(&block);
}

OSErr FSpMoveRename(const FSSpec* inSource, const FSSpec* inDestination,
                    ConstStr255Param inNewName) {
    if (inSource->vRefNum != inDestination->vRefNum) return diffVolErr;
    return HMoveRename(inSource->vRefNum, inSource->parID, inSource->name, inDestination->parID,
                       inDestination->name, inNewName);
}

OSErr HMoveRenameCompat(FSVolumeRefNum inVRefNum, SInt32 inSourceDirID,
                        ConstStr255Param inSourceName, SInt32 inDestinationDirID,
                        ConstStr255Param inDestinationPath, ConstStr255Param inNewName) {
    GetVolParmsInfoBuffer parms = {};
    SInt32 size = 32;
    const OSErr err = HGetVolParms(inSourceName, inVRefNum, &parms, &size);
    if (err != noErr && err != paramErr) return err;
    if (err == noErr && hasMoveRename(&parms)) {
        return HMoveRename(inVRefNum, inSourceDirID, inSourceName, inDestinationDirID,
                           inDestinationPath, inNewName);
    }
    if (inNewName == nullptr) {
        return CatMove(inVRefNum, inSourceDirID, inSourceName, inDestinationDirID,
                       inDestinationPath);
    }
    return Emulate(inVRefNum, inSourceDirID, inSourceName,
                   {inDestinationDirID, inDestinationPath, inNewName});
}

OSErr FSpMoveRenameCompat(const FSSpec* inSource, const FSSpec* inDestination,
                          ConstStr255Param inNewName) {
    if (inSource->vRefNum != inDestination->vRefNum) return diffVolErr;
    return HMoveRenameCompat(inSource->vRefNum, inSource->parID, inSource->name,
                             inDestination->parID, inDestination->name, inNewName);
}
