// Owns the calls that open and close forks.
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include "file_manager/fork_opening.h"
#include "file_manager/fork_table.h"
#include "file_manager/pathname.h"

namespace carbon {

namespace {

struct Place {
    FSVolumeRefNum volume;
    SInt32 directory;
    ConstStr255Param name;
};

ForkRequest Permission(Fork inFork, SInt8 inPermission) {
    return {inFork, false, UInt8(inPermission)};
}

OSErr OpenAt(const Place& inPlace, const ForkRequest& inRequest, SInt16* outNumber) {
    Object object;
    bool isLocked = false;
    {
        const Catalog catalog;
        Objects& objects = *catalog;
        const OSErr error =
            FindByPathname(objects, inPlace.volume, inPlace.directory, inPlace.name, &object);
        if (error != noErr) return error;
        const Volume* volume = objects.AllFolders().FindVolume(object.spec.vRefNum);
        if (!volume) return nsvErr;
        isLocked = volume->isReadOnly;
    }
    return OpenForkOf(object, inRequest, isLocked, outNumber);
}

OSErr OpenInShort(const Place& inPlace, const ForkRequest& inRequest, SInt16* outNumber) {
    if (!outNumber) return paramErr;
    *outNumber = 0;
    return OpenAt(inPlace, inRequest, outNumber);
}

OSErr OpenSpec(const FSSpec* inSpec, const ForkRequest& inRequest, SInt16* outNumber) {
    if (!inSpec) return paramErr;
    return OpenInShort({inSpec->vRefNum, inSpec->parID, inSpec->name}, inRequest, outNumber);
}

OSErr OpenBlock(HParmBlkPtr ioBlock, Fork inFork) {
    if (!ioBlock) return paramErr;
    auto& block = ioBlock->ioParam;
    const Place place{block.ioVRefNum, ioBlock->fileParam.ioDirID, block.ioNamePtr};
    SInt16 number = 0;
    block.ioResult = OpenAt(place, Permission(inFork, block.ioPermssn), &number);
    block.ioRefNum = number;
    return block.ioResult;
}

OSErr OpenDenyBlock(HParmBlkPtr ioBlock, Fork inFork) {
    if (!ioBlock) return paramErr;
    auto& block = ioBlock->accessParam;
    const Place place{block.ioVRefNum, block.ioDirID, block.ioNamePtr};
    SInt16 number = 0;
    block.ioResult = OpenAt(place, {inFork, true, UInt8(block.ioDenyModes)}, &number);
    block.ioRefNum = number;
    return block.ioResult;
}

OSErr CloseFork(SInt16 inNumber) {
    std::shared_ptr<OpenFork> fork;
    const OSErr error = TakeOpenFork(inNumber, &fork);
    return error == noErr ? fork->Close() : error;
}

}  // namespace

}  // namespace carbon

using carbon::Fork;

OSErr FSpOpenDF(const FSSpec* spec, SInt8 permission, SInt16* refNum) {
    return carbon::OpenSpec(spec, carbon::Permission(Fork::kData, permission), refNum);
}

OSErr FSpOpenRF(const FSSpec* spec, SInt8 permission, SInt16* refNum) {
    return carbon::OpenSpec(spec, carbon::Permission(Fork::kResource, permission), refNum);
}

OSErr HOpen(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, SInt8 permission,
            SInt16* refNum) {
    return HOpenDF(vRefNum, dirID, fileName, permission, refNum);
}

OSErr HOpenDF(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, SInt8 permission,
              SInt16* refNum) {
    return carbon::OpenInShort({vRefNum, dirID, fileName},
                               carbon::Permission(Fork::kData, permission), refNum);
}

OSErr HOpenRF(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, SInt8 permission,
              SInt16* refNum) {
    return carbon::OpenInShort({vRefNum, dirID, fileName},
                               carbon::Permission(Fork::kResource, permission), refNum);
}

OSErr PBHOpenSync(HParmBlkPtr paramBlock) {
    return carbon::OpenBlock(paramBlock, Fork::kData);
}

OSErr PBHOpenDFSync(HParmBlkPtr paramBlock) {
    return carbon::OpenBlock(paramBlock, Fork::kData);
}

OSErr PBHOpenRFSync(HParmBlkPtr paramBlock) {
    return carbon::OpenBlock(paramBlock, Fork::kResource);
}

OSErr PBHOpenDenySync(HParmBlkPtr paramBlock) {
    return carbon::OpenDenyBlock(paramBlock, Fork::kData);
}

OSErr PBHOpenRFDenySync(HParmBlkPtr paramBlock) {
    return carbon::OpenDenyBlock(paramBlock, Fork::kResource);
}

OSErr FSClose(SInt16 refNum) {
    return carbon::CloseFork(refNum);
}

OSErr PBCloseSync(ParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return paramBlock->ioParam.ioResult = carbon::CloseFork(paramBlock->ioParam.ioRefNum);
}
