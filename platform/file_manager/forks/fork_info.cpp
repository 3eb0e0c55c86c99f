// Owns the calls that lock ranges of open forks, flush them and tell about them.
#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <limits>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/names.h"
#include "file_manager/catalog/objects.h"
#include "file_manager/forks/fork_table.h"
#include "file_manager/volumes/volume_selection.h"

namespace carbon {

namespace {

OSErr LockByBlock(IOParam* ioBlock, bool inIsLock) {
    std::shared_ptr<OpenFork> fork;
    OSErr error = FindOpenFork(ioBlock->ioRefNum, &fork);
    if (error == noErr) {
        const auto change = inIsLock ? &OpenFork::LockRange : &OpenFork::UnlockRange;
        error = ((*fork).*change)(ioBlock->ioPosMode, ioBlock->ioPosOffset, ioBlock->ioReqCount);
    }
    return ioBlock->ioResult = error;
}

OSErr Flush(SInt16 inNumber) {
    std::shared_ptr<OpenFork> fork;
    const OSErr error = FindOpenFork(inNumber, &fork);
    return error == noErr ? fork->Flush() : error;
}

FSVolumeRefNum NumberOfVolume(ConstStr255Param inName, FSVolumeRefNum inNumber) {
    const Catalog catalog;
    const Volume* volume = VolumeByName(*catalog, inName, inNumber);
    return volume ? volume->number : FSVolumeRefNum(0);
}

OSErr FlushVolume(ConstStr255Param inName, FSVolumeRefNum inNumber) {
    const FSVolumeRefNum volume = NumberOfVolume(inName, inNumber);
    if (volume == 0) return nsvErr;
    OSErr result = noErr;
    for (const auto& path : OpenForksInOrder()) {
        const bool isMeant = path.fork->GetFacts().spec.vRefNum == volume && path.fork->IsChanged();
        const OSErr error = isMeant ? path.fork->Flush() : OSErr(noErr);
        if (result == noErr) result = error;
    }
    return result;
}

// What is asked for: a number, or a position among the forks open on a volume.
OSErr FindAsked(const FCBPBRec& inBlock, NumberedFork* outFork) {
    if (inBlock.ioFCBIndx <= 0) {
        outFork->number = inBlock.ioRefNum;
        return FindOpenFork(inBlock.ioRefNum, &outFork->fork);
    }
    SInt16 left = inBlock.ioFCBIndx;
    for (auto& path : OpenForksInOrder()) {
        const auto volume = path.fork->GetFacts().spec.vRefNum;
        if ((inBlock.ioVRefNum == 0 || inBlock.ioVRefNum == volume) && --left == 0) {
            *outFork = path;
            return noErr;
        }
    }
    return fnOpnErr;
}

SInt16 FlagsOf(OpenFork& ioFork) {
    const auto& facts = ioFork.GetFacts();
    UInt16 flags = 0;
    if (facts.uses & kWrites) flags |= kioFCBWriteMask;
    if (facts.uses & kWritesTogether) flags |= kioFCBSharedWriteMask;
    if (facts.fork == Fork::kResource) flags |= kioFCBResourceMask;
    if (ioFork.HasRangeLocks()) flags |= kioFCBWriteLockedMask;
    if (ioFork.IsChanged()) flags |= kioFCBModifiedMask;
    return SInt16(flags);
}

// Where the file is now; where it was opened if it has been deleted.
void PutPlace(const OpenFork& inFork, FCBPBRec* outBlock) {
    Object object;
    object.spec = inFork.GetFacts().spec;
    const Catalog catalog;
    Objects& objects = *catalog;
    const auto path = PathOfOpenFile(inFork.File());
    outBlock->ioFCBFlNm = 0;
    if (!path.empty() && objects.FindByPath(path, &object) == noErr)
        outBlock->ioFCBFlNm = SInt32(NodeIDOf(objects, object));
    outBlock->ioFCBVRefNum = object.spec.vRefNum;
    outBlock->ioFCBParID = object.spec.parID;
    if (outBlock->ioNamePtr)
        SetPascal(TextOfPascal(object.spec.name), kLongestSpecName, outBlock->ioNamePtr);
}

SInt32 Clipped(SInt64 inNumber) {
    return SInt32(std::min<SInt64>(inNumber, std::numeric_limits<SInt32>::max()));
}

OSErr TellAbout(FCBPBRec* ioBlock) {
    NumberedFork path;
    if (const OSErr error = FindAsked(*ioBlock, &path)) return error;
    SInt64 length = 0, space = 0;
    OSErr error = path.fork->GetLength(&length);
    if (error == noErr) error = path.fork->GetSpace(&space);
    if (error != noErr) return error;
    ioBlock->ioRefNum = path.number;
    ioBlock->ioFCBFlags = FlagsOf(*path.fork);
    ioBlock->ioFCBStBlk = 0;
    ioBlock->ioFCBEOF = Clipped(length);
    ioBlock->ioFCBPLen = Clipped(space);
    ioBlock->ioFCBCrPs = Clipped(path.fork->Mark());
    ioBlock->ioFCBClpSiz = 0;
    PutPlace(*path.fork, ioBlock);
    return noErr;
}

OSErr VolumeOf(SInt16 inNumber, FSVolumeRefNum* outVolume) {
    std::shared_ptr<OpenFork> fork;
    const OSErr error = FindOpenFork(inNumber, &fork);
    if (error == noErr) *outVolume = fork->GetFacts().spec.vRefNum;
    return error;
}

}  // namespace

}  // namespace carbon

OSErr PBLockRangeSync(ParmBlkPtr paramBlock) {
    return paramBlock ? carbon::LockByBlock(&paramBlock->ioParam, true) : OSErr(paramErr);
}

OSErr PBUnlockRangeSync(ParmBlkPtr paramBlock) {
    return paramBlock ? carbon::LockByBlock(&paramBlock->ioParam, false) : OSErr(paramErr);
}

OSErr PBFlushFileSync(ParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return paramBlock->ioParam.ioResult = carbon::Flush(paramBlock->ioParam.ioRefNum);
}

OSErr FlushVol(ConstStr63Param volName, FSVolumeRefNum vRefNum) {
    return carbon::FlushVolume(volName, vRefNum);
}

OSErr PBFlushVolSync(ParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    auto& block = paramBlock->ioParam;
    return block.ioResult = carbon::FlushVolume(block.ioNamePtr, block.ioVRefNum);
}

OSErr PBGetFCBInfoSync(FCBPBPtr paramBlock) {
    return paramBlock ? paramBlock->ioResult = carbon::TellAbout(paramBlock) : OSErr(paramErr);
}

OSErr GetVRefNum(SInt16 fileRefNum, FSVolumeRefNum* vRefNum) {
    return vRefNum ? carbon::VolumeOf(fileRefNum, vRefNum) : OSErr(paramErr);
}
