// Owns the calls that open and close forks.
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include "file_manager/catalog/located.h"
#include "file_manager/forks/fork_opening.h"
#include "file_manager/forks/fork_table.h"

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

// The lock is the catalog's only: opening may have to wait for another process.
OSErr Find(const Place& inPlace, Located* outLocated) {
    const Catalog catalog;
    return Locate(*catalog, inPlace.volume, inPlace.directory, inPlace.name, outLocated);
}

OSErr OpenAt(const Place& inPlace, const ForkRequest& inRequest, SInt16* outNumber) {
    Located located;
    if (const OSErr error = Find(inPlace, &located)) return error;
    const Volume& volume = located.volume;
    if (inRequest.hasDenyModes && Lacks(volume, kPlatformMountNoOpenDeny)) return paramErr;
    const bool isLocked = CheckWritable(volume) != noErr;
    return OpenForkOf(located.object, inRequest, isLocked, outNumber);
}

// A file system may know PBHOpen alone.
OSErr CheckKnowsDataForks(const Place& inPlace) {
    Located located;
    const OSErr error = Find(inPlace, &located);
    const bool isUnknown = Lacks(located.volume, kPlatformMountNoOpenDataFork);
    return error == noErr && isUnknown ? OSErr(paramErr) : OSErr(noErr);
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

OSErr OpenDataForkBlock(HParmBlkPtr ioBlock) {
    if (!ioBlock) return paramErr;
    auto& block = ioBlock->ioParam;
    const Place place{block.ioVRefNum, ioBlock->fileParam.ioDirID, block.ioNamePtr};
    block.ioResult = CheckKnowsDataForks(place);
    return block.ioResult == noErr ? OpenBlock(ioBlock, Fork::kData) : block.ioResult;
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
    return carbon::OpenInShort({vRefNum, dirID, fileName},
                               carbon::Permission(Fork::kData, permission), refNum);
}

OSErr HOpenDF(FSVolumeRefNum vRefNum, SInt32 dirID, ConstStr255Param fileName, SInt8 permission,
              SInt16* refNum) {
    if (const OSErr error = carbon::CheckKnowsDataForks({vRefNum, dirID, fileName})) return error;
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
    return carbon::OpenDataForkBlock(paramBlock);
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
