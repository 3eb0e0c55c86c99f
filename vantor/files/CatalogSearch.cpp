// Searching a volume in whichever way it can be searched, and going on where a search stopped.
#include "vantor/files/CatalogSearch.h"

#include "vantor/files/ForkCopy.h"
#include "vantor/files/IndexedSearch.h"
#include "vantor/files/VolumeInfo.h"
#include "vantor/files/VolumeParameters.h"
#include "vantor/foundation/StPointer.h"

namespace {

// Where the last search of one kind stopped.
struct Bookmark {
    CatPositionRec position = {};
    FSVolumeRefNum vRefNum = 0;
};

// What a search is for, and where its answers go. Only files are sought.
class FileSearch {
  public:
    FileSearch(SInt32 inBits, FSSpecPtr outFiles, SInt32 inRequested) {
        mValues.hFileInfo.ioFlAttrib = 0;
        mMasks.hFileInfo.ioFlAttrib = kioFlAttribDirMask;
        mBlock.ioMatchPtr = outFiles;
        mBlock.ioReqMatchCount = inRequested;
        mBlock.ioSearchBits = inBits | fsSBFlAttrib;
        mBlock.ioSearchInfo1 = &mValues;
        mBlock.ioSearchInfo2 = &mMasks;
    }
    FileSearch(const FileSearch&) = delete;
    FileSearch& operator=(const FileSearch&) = delete;

    void SeekName(ConstStr255Param inName) {
        mValues.hFileInfo.ioNamePtr = const_cast<StringPtr>(inName);
    }
    void SeekSignature(OSType inCreator, OSType inFileType) {
        mValues.hFileInfo.ioFlFndrInfo.fdCreator = inCreator;
        mValues.hFileInfo.ioFlFndrInfo.fdType = inFileType;
        mMasks.hFileInfo.ioFlFndrInfo.fdCreator = MaskFor(inCreator);
        mMasks.hFileInfo.ioFlFndrInfo.fdType = MaskFor(inFileType);
    }

    OSErr Run(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum, Boolean inNew, SInt32* outFound,
              Bookmark& ioBookmark) {
        *outFound = 0;
        const OSErr err = DetermineVRefNum(inVolName, inVRefNum, &mBlock.ioVRefNum);
        return err != noErr ? err : RunFrom(inNew, outFound, ioBookmark);
    }

  private:
    static OSType MaskFor(OSType inCode) { return inCode != 0 ? 0xFFFFFFFF : 0; }

    OSErr RunFrom(Boolean inNew, SInt32* outFound, Bookmark& ioBookmark) {
        const bool isNew = inNew || mBlock.ioVRefNum != ioBookmark.vRefNum;
        mBlock.ioCatPosition = isNew ? CatPositionRec{} : ioBookmark.position;
        const OSErr err = RunWithBuffer();
        if (err == noErr || err == eofErr) *outFound = mBlock.ioActMatchCount;
        const bool goesOn = err == noErr || err == catChangedErr;
        ioBookmark = goesOn ? Bookmark{mBlock.ioCatPosition, mBlock.ioVRefNum} : Bookmark{};
        return err;
    }

    // A smaller buffer will do, and none as well.
    OSErr RunWithBuffer() {
        const StPointerBlock buffer(GetTempBuffer(16384, &mBlock.ioOptBufSize));
        mBlock.ioOptBuffer = buffer.Get();
        return PBCatSearchSyncCompat(&mBlock);
    }

    CSParam mBlock = {};
    CInfoPBRec mValues = {};
    CInfoPBRec mMasks = {};
};

Bookmark sNameBookmark, sSignatureBookmark;

}  // namespace

OSErr PBCatSearchSyncCompat(CSParamPtr ioBlock) {
    GetVolParmsInfoBuffer parameters = {};
    SInt32 size = 32;
    const OSErr err = HGetVolParms(ioBlock->ioNamePtr, ioBlock->ioVRefNum, &parameters, &size);
    if (err != noErr && err != paramErr) return err;
    if (err == noErr && hasCatSearch(&parameters)) return PBCatSearchSync(ioBlock);
    return IndexedSearch(ioBlock, fsRtDirID);
}

OSErr NameFileSearch(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum,
                     ConstStr255Param inFileName, FSSpecPtr outFiles, SInt32 inRequested,
                     SInt32* outFound, Boolean inNew, Boolean inPartial) {
    FileSearch search(inPartial ? fsSBPartialName : fsSBFullName, outFiles, inRequested);
    search.SeekName(inFileName);
    return search.Run(inVolName, inVRefNum, inNew, outFound, sNameBookmark);
}

OSErr CreatorTypeFileSearch(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum, OSType inCreator,
                            OSType inFileType, FSSpecPtr outFiles, SInt32 inRequested,
                            SInt32* outFound, Boolean inNew) {
    FileSearch search(fsSBFlFndrInfo, outFiles, inRequested);
    search.SeekSignature(inCreator, inFileType);
    return search.Run(inVolName, inVRefNum, inNew, outFound, sSignatureBookmark);
}
