// Owns the search through a volume's catalog for what an alias may mean.
#include "alias_manager/volume_search.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <array>

#include "file_manager/catalog/classic_dates.h"
#include "file_manager/catalog/names.h"

namespace carbon {

namespace {

constexpr SInt64 kUnixEpoch = 2082844800;  // seconds from 1904 to 1970
constexpr int kMostChanges = 16;           // of the catalog under the search

// One search and all that its record points to.
class VolumeSearch {
  public:
    VolumeSearch(FSVolumeRefNum inVolume, const AliasContents& inContents) {
        mBlock.ioVRefNum = inVolume;
        mBlock.ioMatchPtr = mFound.data();
        mBlock.ioReqMatchCount = SInt32(mFound.size());
        mBlock.ioSearchInfo1 = &mLeast;
        mBlock.ioSearchInfo2 = &mMost;
        if (inContents.created == 0) {
            AskForName(inContents.name);
        } else {
            AskForDate(inContents.created);
        }
        if (!inContents.IsMinimal()) AskForKind(inContents);
    }
    VolumeSearch(const VolumeSearch&) = delete;
    VolumeSearch& operator=(const VolumeSearch&) = delete;

    OSErr Next(std::vector<FSSpec>* ioSpecs) {
        const OSErr error = PBCatSearchSync(&mBlock);
        const auto count = mBlock.ioActMatchCount;
        ioSpecs->insert(ioSpecs->end(), mFound.begin(), mFound.begin() + count);
        return error;
    }

  private:
    void AskForName(const std::string& inName) {
        mBlock.ioSearchBits |= fsSBFullName;
        SetPascal(inName, kLongestSpecName, mName);
        mLeast.hFileInfo.ioNamePtr = mName;
    }
    void AskForDate(UInt32 inCreated) {
        mBlock.ioSearchBits |= fsSBFlCrDat;
        const UInt32 date = ClassicDate(SInt64(inCreated) - kUnixEpoch);
        mLeast.hFileInfo.ioFlCrDat = mMost.hFileInfo.ioFlCrDat = date;
    }
    // Type and creator tell the index which folders it need not look into.
    void AskForKind(const AliasContents& inContents) {
        mBlock.ioSearchBits |= fsSBFlAttrib;
        mLeast.hFileInfo.ioFlAttrib = SInt8(inContents.isFolder ? kioFlAttribDirMask : 0);
        mMost.hFileInfo.ioFlAttrib = SInt8(kioFlAttribDirMask);
        if (inContents.isFolder) return;
        mBlock.ioSearchBits |= fsSBFlFndrInfo;
        mLeast.hFileInfo.ioFlFndrInfo.fdType = inContents.type;
        mLeast.hFileInfo.ioFlFndrInfo.fdCreator = inContents.creator;
        mMost.hFileInfo.ioFlFndrInfo.fdType = 0xFFFFFFFF;
        mMost.hFileInfo.ioFlFndrInfo.fdCreator = 0xFFFFFFFF;
    }

    CSParam mBlock{};
    CInfoPBRec mLeast{}, mMost{};
    Str63 mName = "";
    std::array<FSSpec, 64> mFound;
};

}  // namespace

std::vector<FSSpec> LookalikesOnVolume(FSVolumeRefNum inVolume, const AliasContents& inContents,
                                       size_t inMost) {
    std::vector<FSSpec> specs;
    VolumeSearch search(inVolume, inContents);
    OSErr error = noErr;
    for (int changes = 0; error == noErr && specs.size() < inMost;) {
        error = search.Next(&specs);
        if (error == catChangedErr && changes++ < kMostChanges) error = noErr;
    }
    specs.resize(std::min(specs.size(), inMost));
    return specs;
}

}  // namespace carbon
