// Testing an item of the catalog against a search block: the first test that fails decides.
#include "vantor/files/CatalogMatch.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

constexpr SInt32 kNameBits = fsSBPartialName | fsSBFullName;
constexpr SInt32 kFileBits = fsSBFlLgLen | fsSBFlPyLen | fsSBFlRLgLen | fsSBFlRPyLen;
constexpr UInt8 kLongestName = 63;
constexpr std::size_t kFinderInfoSize = 16;

bool IsFolder(const CInfoPBRec& inItem) {
    return (inItem.hFileInfo.ioFlAttrib & kioFlAttribDirMask) != 0;
}

bool IsName(ConstStringPtr inName) {
    return inName[0] > 0 && inName[0] <= kLongestName;
}

void CapitalsOf(ConstStringPtr inName, StringPtr outCapitals) {
    std::copy_n(inName, inName[0] + 1, outCapitals);
    UpperString(outCapitals, true);
}

bool IsSubString(ConstStringPtr inText, ConstStringPtr inPart) {
    const auto end = inText + inText[0] + 1;
    return std::search(inText + 1, end, inPart + 1, inPart + inPart[0] + 1) != end;
}

// Four long words, each without a difference where its mask has bits.
bool CompareMasked(const void* inItem, const void* inValue, const void* inMask) {
    UInt8 item[kFinderInfoSize], value[kFinderInfoSize], mask[kFinderInfoSize];
    std::memcpy(item, inItem, sizeof item);
    std::memcpy(value, inValue, sizeof value);
    std::memcpy(mask, inMask, sizeof mask);
    for (std::size_t i = 0; i < kFinderInfoSize; ++i) {
        if ((item[i] ^ value[i]) & mask[i]) return false;
    }
    return true;
}

bool IsBetween(UInt32 inValue, UInt32 inLowest, UInt32 inHighest) {
    return inLowest <= inValue && inValue <= inHighest;
}

// The lengths and dates that a range can be given for, in the order of their tests.
struct Range {
    SInt32 bit;
    UInt32 (*value)(const CInfoPBRec&);
};

const Range kRanges[] = {
    {fsSBFlLgLen, [](const CInfoPBRec& inItem) { return UInt32(inItem.hFileInfo.ioFlLgLen); }},
    {fsSBFlPyLen, [](const CInfoPBRec& inItem) { return UInt32(inItem.hFileInfo.ioFlPyLen); }},
    {fsSBFlRLgLen, [](const CInfoPBRec& inItem) { return UInt32(inItem.hFileInfo.ioFlRLgLen); }},
    {fsSBFlRPyLen, [](const CInfoPBRec& inItem) { return UInt32(inItem.hFileInfo.ioFlRPyLen); }},
    {fsSBFlCrDat, [](const CInfoPBRec& inItem) { return UInt32(inItem.hFileInfo.ioFlCrDat); }},
    {fsSBFlMdDat, [](const CInfoPBRec& inItem) { return UInt32(inItem.hFileInfo.ioFlMdDat); }},
    {fsSBFlBkDat, [](const CInfoPBRec& inItem) { return UInt32(inItem.hFileInfo.ioFlBkDat); }},
};

}  // namespace

OSErr CatalogMatch::Check() {
    const bool fits = HasRecords() && TakeName() && TakeAttributes() && SuitsKinds();
    return fits ? OSErr{noErr} : OSErr{paramErr};
}

bool CatalogMatch::HasRecords() const {
    if (mBlock.ioMatchPtr == nullptr || mBlock.ioSearchInfo1 == nullptr) return false;
    return mBlock.ioSearchInfo2 != nullptr || !Seeks(~(kNameBits | fsSBNegate));
}

bool CatalogMatch::TakeName() {
    if (!Seeks(kNameBits)) return true;
    const ConstStringPtr name = mBlock.ioSearchInfo1->hFileInfo.ioNamePtr;
    if (name == nullptr || !IsName(name)) return false;
    CapitalsOf(name, mCapitals);
    return true;
}

bool CatalogMatch::TakeAttributes() {
    if (!Seeks(fsSBFlAttrib)) return true;
    const int mask = mBlock.ioSearchInfo2->hFileInfo.ioFlAttrib;
    if (mask & ~(kioFlAttribLockedMask | kioFlAttribDirMask)) return false;
    if (mask & kioFlAttribDirMask) {
        mFolders = IsFolder(*mBlock.ioSearchInfo1);
        mFiles = !mFolders;
    }
    return !mFolders || !(mask & kioFlAttribLockedMask);
}

// Files have no count of items, folders no forks.
bool CatalogMatch::SuitsKinds() const {
    return !(mFiles && Seeks(fsSBDrNmFls)) && !(mFolders && Seeks(kFileBits));
}

bool CatalogMatch::Matches(const CInfoPBRec& inItem, ConstStringPtr inName) const {
    // Kept: negated, the search also gives items of the kind that does not take part.
    return PassesAll(inItem, inName) != Seeks(fsSBNegate);
}

bool CatalogMatch::CanSkim() const {
    constexpr SInt32 kSkimmed =
        kNameBits | fsSBFlParID | fsSBFlAttrib | fsSBFlFndrInfo | fsSBFlXFndrInfo;
    if (Seeks(~kSkimmed)) return false;
    return !Seeks(fsSBFlAttrib) ||
           !(mBlock.ioSearchInfo2->hFileInfo.ioFlAttrib & kioFlAttribLockedMask);
}

FSCatalogInfoBitmap CatalogMatch::SkimmedInfo() const {
    FSCatalogInfoBitmap fields = kFSCatInfoParentDirID;
    if (Seeks(fsSBFlFndrInfo)) fields |= kFSCatInfoFinderInfo;
    if (Seeks(fsSBFlXFndrInfo)) fields |= kFSCatInfoFinderXInfo;
    return fields;
}

bool CatalogMatch::MayMatch(const FSCatalogInfo& inInfo, ConstStringPtr inName) const {
    CInfoPBRec item = {};
    item.hFileInfo.ioFlParID = SInt32(inInfo.parentDirID);
    if (Seeks(fsSBFlFndrInfo))
        std::memcpy(&item.hFileInfo.ioFlFndrInfo, inInfo.finderInfo, sizeof inInfo.finderInfo);
    if (Seeks(fsSBFlXFndrInfo))
        std::memcpy(&item.hFileInfo.ioFlXFndrInfo, inInfo.extFinderInfo,
                    sizeof inInfo.extFinderInfo);
    if (Matches(item, inName)) return true;
    item.hFileInfo.ioFlAttrib = kioFlAttribDirMask;
    return Matches(item, inName);
}

bool CatalogMatch::PassesAll(const CInfoPBRec& inItem, ConstStringPtr inName) const {
    if (!TakesPart(inItem) || !PassesName(inName)) return false;
    if (!Seeks(~(kNameBits | fsSBNegate))) return true;  // there need not be a second record then
    return PassesNumbers(inItem) && PassesFinderInfo(inItem) && PassesRanges(inItem);
}

bool CatalogMatch::TakesPart(const CInfoPBRec& inItem) const {
    return IsFolder(inItem) ? mFolders : mFiles;
}

bool CatalogMatch::PassesName(ConstStringPtr inName) const {
    if (Seeks(fsSBPartialName)) {
        if (!IsName(inName)) return false;
        Str255 capitals;
        CapitalsOf(inName, capitals);
        if (!IsSubString(capitals, mCapitals)) return false;
    }
    return !Seeks(fsSBFullName) ||
           EqualString(inName, mBlock.ioSearchInfo1->hFileInfo.ioNamePtr, false, true);
}

bool CatalogMatch::PassesNumbers(const CInfoPBRec& inItem) const {
    const CInfoPBRec &low = *mBlock.ioSearchInfo1, &high = *mBlock.ioSearchInfo2;
    if (Seeks(fsSBFlParID) &&
        !IsBetween(UInt32(inItem.hFileInfo.ioFlParID), UInt32(low.hFileInfo.ioFlParID),
                   UInt32(high.hFileInfo.ioFlParID)))
        return false;
    if (Seeks(fsSBFlAttrib) &&
        ((inItem.hFileInfo.ioFlAttrib ^ low.hFileInfo.ioFlAttrib) & high.hFileInfo.ioFlAttrib) != 0)
        return false;
    return !Seeks(fsSBDrNmFls) ||
           IsBetween(inItem.dirInfo.ioDrNmFls, low.dirInfo.ioDrNmFls, high.dirInfo.ioDrNmFls);
}

bool CatalogMatch::PassesFinderInfo(const CInfoPBRec& inItem) const {
    const CInfoPBRec &value = *mBlock.ioSearchInfo1, &mask = *mBlock.ioSearchInfo2;
    if (Seeks(fsSBFlFndrInfo) &&
        !CompareMasked(&inItem.hFileInfo.ioFlFndrInfo, &value.hFileInfo.ioFlFndrInfo,
                       &mask.hFileInfo.ioFlFndrInfo))
        return false;
    return !Seeks(fsSBFlXFndrInfo) ||
           CompareMasked(&inItem.hFileInfo.ioFlXFndrInfo, &value.hFileInfo.ioFlXFndrInfo,
                         &mask.hFileInfo.ioFlXFndrInfo);
}

bool CatalogMatch::PassesRanges(const CInfoPBRec& inItem) const {
    return std::all_of(std::begin(kRanges), std::end(kRanges), [&](const Range& inRange) {
        return !Seeks(inRange.bit) ||
               IsBetween(inRange.value(inItem), inRange.value(*mBlock.ioSearchInfo1),
                         inRange.value(*mBlock.ioSearchInfo2));
    });
}
