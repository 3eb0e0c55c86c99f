// Owns the tests that a search makes: which may be asked together, and what each compares.
#include "catalog_search/search_criteria.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>

#include "file_manager/catalog/names.h"

namespace carbon {

namespace {

constexpr SInt32 kNames = fsSBPartialName | fsSBFullName;
constexpr SInt32 kLengths = fsSBFlLgLen | fsSBFlPyLen | fsSBFlRLgLen | fsSBFlRPyLen;
constexpr SInt32 kDates = fsSBFlCrDat | fsSBFlMdDat | fsSBFlBkDat;
constexpr SInt32 kKnownBits = kNames | fsSBFlAttrib | fsSBFlFndrInfo | fsSBDrNmFls | kLengths |
                              kDates | fsSBFlXFndrInfo | fsSBFlParID | fsSBNegate;
// These may be other than the index says, and do not tell by their folder's times.
constexpr SInt32 kNeverInIndex = fsSBDrNmFls | kLengths | kDates | fsSBFlParID;

bool IsPlain(std::string_view inDiskName) {
    return inDiskName.size() <= kLongestSpecName &&
           std::all_of(inDiskName.begin(), inDiskName.end(),
                       [](char inByte) { return UInt8(inByte) < 0x80 && inByte != '#'; });
}

// Small letters for capitals in ASCII, and what separates names on a Mac.
struct PlainTable {
    char folded[128];
    PlainTable() {
        for (int i = 0; i < 128; ++i)
            folded[i] = i == ':' ? '/' : Folded(std::string(1, char(i)))[0];
    }
};

template <typename Record>
std::array<UInt8, 16> BytesOf(const Record& inRecord) {
    static_assert(sizeof inRecord == 16);
    std::array<UInt8, 16> bytes;
    std::memcpy(bytes.data(), &inRecord, bytes.size());
    return bytes;
}

UInt32 WordAt(const std::array<UInt8, 16>& inBytes, size_t inOffset) {
    UInt32 word;
    std::memcpy(&word, inBytes.data() + inOffset, sizeof word);
    return word;
}

}  // namespace

bool SearchCriteria::MaskedInfo::Holds(const UInt8* inInfo) const {
    static constexpr Info kNothing{};
    const UInt8* info = inInfo ? inInfo : kNothing.data();
    for (size_t i = 0; i < value.size(); ++i) {
        if (((info[i] ^ value[i]) & mask[i]) != 0) return false;
    }
    return true;
}

OSErr SearchCriteria::CheckRecords(const CSParam& inBlock) const {
    if (mBits & ~kKnownBits || inBlock.ioReqMatchCount < 0) return paramErr;
    if (!inBlock.ioMatchPtr || !inBlock.ioSearchInfo1) return paramErr;
    const bool needsMasks = mBits & ~(kNames | fsSBNegate);
    if (needsMasks && !inBlock.ioSearchInfo2) return paramErr;
    if (inBlock.ioSearchInfo2 && inBlock.ioSearchInfo2->hFileInfo.ioNamePtr) return paramErr;
    if (!Has(kNames)) return noErr;
    const auto* name = inBlock.ioSearchInfo1->hFileInfo.ioNamePtr;
    const bool isName = name && name[0] > 0 && name[0] <= kLongestSpecName;
    return isName ? OSErr(noErr) : OSErr(paramErr);
}

// What is true of files or of folders only may not be asked of both.
OSErr SearchCriteria::CheckKinds() const {
    if (mAttributesMask & ~(kioFlAttribLockedMask | kioFlAttribDirMask)) return paramErr;
    if (mTakesFolders && (mAttributesMask & kioFlAttribLockedMask)) return paramErr;
    if (mTakesFolders && Has(kLengths)) return paramErr;
    return mTakesFiles && Has(fsSBDrNmFls) ? OSErr(paramErr) : OSErr(noErr);
}

void SearchCriteria::TakeValues(const CSParam& inBlock) {
    const HFileInfo& least = inBlock.ioSearchInfo1->hFileInfo;
    const HFileInfo none{};
    const HFileInfo& most = inBlock.ioSearchInfo2 ? inBlock.ioSearchInfo2->hFileInfo : none;
    if (Has(kNames)) mName = Folded(TextOfPascal(least.ioNamePtr));
    mInfo = {BytesOf(least.ioFlFndrInfo), BytesOf(most.ioFlFndrInfo)};
    mExtInfo = {BytesOf(least.ioFlXFndrInfo), BytesOf(most.ioFlXFndrInfo)};
    mParent = {UInt32(least.ioFlParID), UInt32(most.ioFlParID)};
    mItems = {least.ioFlStBlk, most.ioFlStBlk};  // where a folder has its number of items
    mLengths = {Range{UInt32(least.ioFlLgLen), UInt32(most.ioFlLgLen)},
                Range{UInt32(least.ioFlPyLen), UInt32(most.ioFlPyLen)},
                Range{UInt32(least.ioFlRLgLen), UInt32(most.ioFlRLgLen)},
                Range{UInt32(least.ioFlRPyLen), UInt32(most.ioFlRPyLen)}};
    mDates = {Range{least.ioFlCrDat, most.ioFlCrDat}, Range{least.ioFlMdDat, most.ioFlMdDat},
              Range{least.ioFlBkDat, most.ioFlBkDat}};
    if (!Has(fsSBFlAttrib)) return;
    mAttributes = UInt8(least.ioFlAttrib);
    mAttributesMask = UInt8(most.ioFlAttrib);
    if (!(mAttributesMask & kioFlAttribDirMask)) return;
    mTakesFolders = (mAttributes & kioFlAttribDirMask) != 0;
    mTakesFiles = !mTakesFolders;
}

OSErr SearchCriteria::Take(const CSParam& inBlock) {
    mBits = inBlock.ioSearchBits;
    if (const OSErr error = CheckRecords(inBlock)) return error;
    mIsNegated = Has(fsSBNegate);
    TakeValues(inBlock);
    return CheckKinds();
}

bool SearchCriteria::MayBeIn(const SearchFilter& inFilter) const {
    if (mIsNegated || !Has(fsSBFlFndrInfo)) return true;
    const bool isFirstWhole = WordAt(mInfo.mask, 0) == 0xFFFFFFFF;
    const bool isSecondWhole = WordAt(mInfo.mask, 4) == 0xFFFFFFFF;
    return (!isFirstWhole || inFilter.MayHoldFirst(WordAt(mInfo.value, 0))) &&
           (!isSecondWhole || inFilter.MayHoldSecond(WordAt(mInfo.value, 4)));
}

bool SearchCriteria::MatchesName(std::string_view inFolded) const {
    if (Has(fsSBPartialName) && inFolded.find(mName) == std::string_view::npos) return false;
    return !Has(fsSBFullName) || inFolded == mName;
}

// A name that is not plain may be another one in a file spec.
Answer SearchCriteria::AskName(std::string_view inDiskName) const {
    static const PlainTable sTable;
    if (!IsPlain(inDiskName)) return Answer::kMaybe;
    char folded[kLongestSpecName];
    for (size_t i = 0; i < inDiskName.size(); ++i) folded[i] = sTable.folded[UInt8(inDiskName[i])];
    return MatchesName({folded, inDiskName.size()}) ? Answer::kYes : Answer::kNo;
}

Answer SearchCriteria::Ask(const SearchEntry& inEntry) const {
    const UInt8 attributes = UInt8((inEntry.isFolder ? kioFlAttribDirMask : 0) |
                                   (inEntry.isLocked ? kioFlAttribLockedMask : 0));
    Answer answer = Answer::kYes;
    if (!TakesKind(inEntry.isFolder) ||
        ((attributes ^ mAttributes) & mAttributesMask & kioFlAttribDirMask) != 0 ||
        (Has(fsSBFlFndrInfo) && !mInfo.Holds(inEntry.finderInfo)) ||
        (Has(fsSBFlXFndrInfo) && !mExtInfo.Holds(inEntry.extFinderInfo))) {
        answer = Answer::kNo;
    } else if (Has(kNames)) {
        answer = AskName(inEntry.name);
    }
    const bool isOpen = Has(kNeverInIndex) || (mAttributesMask & kioFlAttribLockedMask) != 0;
    if (answer == Answer::kYes && isOpen) answer = Answer::kMaybe;
    if (!mIsNegated || answer == Answer::kMaybe) return answer;
    return answer == Answer::kYes ? Answer::kNo : Answer::kYes;
}

bool SearchCriteria::MatchesInfo(LiveObject& ioObject) const {
    if (mAttributesMask & kioFlAttribLockedMask) {
        const auto attributes = UInt8(ioObject.File().ioFlAttrib);
        if (((attributes ^ mAttributes) & mAttributesMask) != 0) return false;
    }
    if (Has(fsSBFlFndrInfo) && !mInfo.Holds(BytesOf(ioObject.File().ioFlFndrInfo).data())) {
        return false;
    }
    return !Has(fsSBFlXFndrInfo) || mExtInfo.Holds(BytesOf(ioObject.File().ioFlXFndrInfo).data());
}

bool SearchCriteria::MatchesRanges(LiveObject& ioObject) const {
    if (!Has(fsSBDrNmFls | kLengths | kDates)) return true;
    const HFileInfo& file = ioObject.File();
    const auto holds = [&](SInt32 inBit, const Range& inRange, auto inValue) {
        return !Has(inBit) || inRange.Holds(UInt32(inValue));
    };
    return holds(fsSBDrNmFls, mItems, ioObject.Folder().ioDrNmFls) &&
           holds(fsSBFlLgLen, mLengths[0], file.ioFlLgLen) &&
           holds(fsSBFlPyLen, mLengths[1], file.ioFlPyLen) &&
           holds(fsSBFlRLgLen, mLengths[2], file.ioFlRLgLen) &&
           holds(fsSBFlRPyLen, mLengths[3], file.ioFlRPyLen) &&
           holds(fsSBFlCrDat, mDates[0], file.ioFlCrDat) &&
           holds(fsSBFlMdDat, mDates[1], file.ioFlMdDat) &&
           holds(fsSBFlBkDat, mDates[2], file.ioFlBkDat);
}

bool SearchCriteria::MatchesAll(LiveObject& ioObject) const {
    const Object& object = ioObject.Itself();
    if (!TakesKind(ioObject.IsFolder())) return false;
    if (Has(kNames) && !MatchesName(Folded(TextOfPascal(object.spec.name)))) return false;
    if (Has(fsSBFlParID) && !mParent.Holds(UInt32(object.spec.parID))) return false;
    return MatchesInfo(ioObject) && MatchesRanges(ioObject);
}

bool SearchCriteria::Matches(LiveObject& ioObject) const {
    // Kept: a search for files alone, negated, finds every folder.
    return MatchesAll(ioObject) != mIsNegated;
}

}  // namespace carbon
