// Walking the catalog, so that the walk can stop and go on in a later call.
#include "vantor/files/IndexedSearch.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "vantor/files/CatalogMatch.h"
#include "vantor/files/CatalogSkim.h"
#include "vantor/files/SearchStack.h"
#include "vantor/files/VolumeInfo.h"

namespace {

constexpr SInt16 kFolderItself = -1;
constexpr SInt16 kLastIndex = 0x7FFF;
constexpr SInt16 kBeyondLastIndex = 0;

// Says when the time of a search is over. A time of 0 never is.
class StTimeLimit {
  public:
    explicit StTimeLimit(SInt32 inTime) : mIsSet(inTime != 0) {
        if (!mIsSet) return;
        mTask.task.tmAddr = NewTimerUPP(Stop);
        InsTime(reinterpret_cast<QElemPtr>(&mTask.task));
        PrimeTime(reinterpret_cast<QElemPtr>(&mTask.task), inTime);
    }
    ~StTimeLimit() {
        if (!mIsSet) return;
        RmvTime(reinterpret_cast<QElemPtr>(&mTask.task));
        DisposeTimerUPP(mTask.task.tmAddr);
    }
    StTimeLimit(const StTimeLimit&) = delete;
    StTimeLimit& operator=(const StTimeLimit&) = delete;

    bool IsOver() const { return mTask.isOver; }

  private:
    struct Task {
        TMTask task = {};  // first, so that its address is the record's
        std::atomic<bool> isOver = false;
    };
    static void Stop(TMTaskPtr inTask) { reinterpret_cast<Task*>(inTask)->isOver = true; }

    Task mTask;
    bool mIsSet;
};

// The end of what can be seen of a folder. One that was taken away meanwhile has come to its end
// too: the folder around it has another date then. What the user may not look into is passed over.
bool IsEndOfFolder(OSErr inError) {
    return inError == fnfErr || inError == dirNFErr || inError == afpAccessDenied;
}

SInt32 ChecksumOf(const HVolumeParam& inVolume) {
    return SInt32(UInt32(inVolume.ioVRefNum) + inVolume.ioVCrDate + inVolume.ioVNmAlBlks +
                  inVolume.ioVAlBlkSiz + UInt32(inVolume.ioVFSID));
}

class Walk {
  public:
    explicit Walk(CSParam& ioBlock)
        : mBlock(ioBlock), mPosition(ioBlock.ioCatPosition), mMatch(ioBlock) {}

    OSErr Search(SInt32 inStartDirID) {
        StTimeLimit limit(mBlock.ioSearchTime);
        mBlock.ioActMatchCount = 0;
        OSErr err = mMatch.Check();
        if (err != noErr) return err;
        err = SearchStack::Make();
        if (err == noErr) err = Begin(inStartDirID);
        while (err == noErr && !limit.IsOver() && mBlock.ioActMatchCount < mBlock.ioReqMatchCount)
            err = Step();
        if (err == noErr) err = Push();
        return err;
    }

  private:
    // The depth lives in the position record: a later call finds it there.
    SInt16& Depth() { return mPosition.priv[0]; }

    OSErr Push() { return SearchStack::Push(mHere, Depth()); }

    OSErr Begin(SInt32 inStartDirID) {
        HParamBlockRec volume = {};
        const OSErr err = GetVolumeInfoNoName(mBlock.ioNamePtr, mBlock.ioVRefNum, &volume);
        if (err != noErr) return err;
        mVRefNum = volume.volumeParam.ioVRefNum;
        const SInt32 checksum = ChecksumOf(volume.volumeParam);
        if (mPosition.initialize == 0) return BeginAnew(checksum, inStartDirID);
        if (mPosition.initialize != checksum) return catChangedErr;
        return SearchStack::Holds(Depth()) ? Return() : OSErr{paramErr};
    }

    OSErr BeginAnew(SInt32 inChecksum, SInt32 inStartDirID) {
        mPosition.initialize = inChecksum;
        Depth() = 0;
        mHere = {0, inStartDirID, kFolderItself, 0};
        return FolderDate(inStartDirID, &mHere.modified);
    }

    // Goes on in the folder on top of the stack, unless it has changed since it was left.
    OSErr Return() {
        mHere = SearchStack::Pop(Depth());
        mSkim = nullptr;
        if (!mOuterSkims.empty()) {
            mSkim = std::move(mOuterSkims.back());
            mOuterSkims.pop_back();
        }
        UInt32 modified = 0;
        const OSErr err = FolderDate(mHere.dirID, &modified);
        if (err != noErr) return IsEndOfFolder(err) ? OSErr{catChangedErr} : err;
        return modified == mHere.modified ? OSErr{noErr} : OSErr{catChangedErr};
    }

    OSErr FolderDate(SInt32 inDirID, UInt32* outModified) {
        CInfoPBRec folder;
        Str255 name = {};
        const OSErr err = Read(inDirID, kFolderItself, name, folder);
        *outModified = folder.dirInfo.ioDrMdDat;
        return err;
    }

    OSErr Read(SInt32 inDirID, SInt16 inIndex, StringPtr outName, CInfoPBRec& outItem) {
        outItem = {};
        outItem.hFileInfo.ioNamePtr = outName;
        outItem.hFileInfo.ioVRefNum = mVRefNum;
        outItem.hFileInfo.ioFDirIndex = inIndex;
        outItem.hFileInfo.ioDirID = inDirID;
        return PBGetCatInfoSync(&outItem);
    }

    OSErr Step() {
        if (mHere.index == kBeyondLastIndex) return Leave();
        if (mSkim) mHere.index = mSkim->Next(mHere.index);
        CInfoPBRec item;
        Str255 name = {};
        const OSErr err = Read(mHere.dirID, mHere.index, name, item);
        const bool isStart = mHere.index == kFolderItself;
        if (err != noErr) return !isStart && IsEndOfFolder(err) ? Leave() : err;
        Take(item, name);
        if (isStart) return Start(mHere.dirID);
        if (mSkim) mSkim->Found(mHere.index, name);
        mHere.index = NextIndex();
        const bool isFolder = (item.hFileInfo.ioFlAttrib & kioFlAttribDirMask) != 0;
        return isFolder ? Enter(item.dirInfo) : OSErr{noErr};
    }

    // Linux: a folder may have more items than an index can count; those are not seen.
    SInt16 NextIndex() const {
        return mHere.index == kLastIndex ? kBeyondLastIndex : SInt16(mHere.index + 1);
    }

    OSErr Start(SInt32 inDirID) {
        mHere.index = 1;
        mSkim = std::make_unique<CatalogSkim>(mMatch, mVRefNum, inDirID);
        return noErr;
    }

    OSErr Enter(const DirInfo& inFolder) {
        const OSErr err = Push();
        if (err != noErr) return err;
        mHere = {inFolder.ioDrMdDat, inFolder.ioDrDirID, 1, 0};
        mOuterSkims.push_back(std::move(mSkim));
        return Start(mHere.dirID);
    }

    OSErr Leave() { return Depth() == 0 ? OSErr{eofErr} : Return(); }

    void Take(const CInfoPBRec& inItem, ConstStringPtr inName) {
        if (!mMatch.Matches(inItem, inName)) return;
        FSSpec& found = mBlock.ioMatchPtr[mBlock.ioActMatchCount++];
        found.vRefNum = mVRefNum;
        found.parID = inItem.hFileInfo.ioFlParID;
        found.name[0] = std::min<UInt8>(inName[0], sizeof found.name - 1);
        std::memcpy(found.name + 1, inName + 1, found.name[0]);
    }

    CSParam& mBlock;
    CatPositionRec& mPosition;
    CatalogMatch mMatch;
    FSVolumeRefNum mVRefNum = 0;
    SearchStack::Level mHere = {};
    // Of the folders entered by this call; one that was gone on with is read item by item.
    std::unique_ptr<CatalogSkim> mSkim;
    std::vector<std::unique_ptr<CatalogSkim>> mOuterSkims;
};

}  // namespace

OSErr IndexedSearch(CSParamPtr ioBlock, SInt32 inStartDirID) {
    return Walk(*ioBlock).Search(inStartDirID);
}
