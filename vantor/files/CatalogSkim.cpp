// Reading a folder in portions, with only what the criteria need.
#include "vantor/files/CatalogSkim.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr ItemCount kPortion = 64;
constexpr SInt16 kLastIndex = 0x7FFF;

FSIterator IteratorOf(FSVolumeRefNum inVRefNum, SInt32 inDirID) {
    FSSpec folder = {};
    folder.vRefNum = inVRefNum;
    folder.parID = inDirID;
    FSRef ref;
    FSIterator iterator = nullptr;
    if (FSpMakeFSRef(&folder, &ref) != noErr) return nullptr;
    return FSOpenIterator(&ref, kFSIterateFlat, &iterator) == noErr ? iterator : nullptr;
}

}  // namespace

CatalogSkim::CatalogSkim(const CatalogMatch& inMatch, FSVolumeRefNum inVRefNum, SInt32 inDirID)
    : mMatch(inMatch) {
    if (mMatch.CanSkim()) mIterator = IteratorOf(inVRefNum, inDirID);
}

void CatalogSkim::Stop() {
    if (mIterator != nullptr) FSCloseIterator(mIterator);
    mIterator = nullptr;
}

bool CatalogSkim::IsKnown(SInt16 inIndex) const {
    return inIndex >= mFirst && inIndex < mFirst + SInt32(mItems.size());
}

SInt16 CatalogSkim::Next(SInt16 inIndex) {
    while (mIterator != nullptr && inIndex < kLastIndex) {
        if (!IsKnown(inIndex) && !ReadOn()) break;
        if (mMustBeRead[std::size_t(inIndex - mFirst)]) break;
        ++inIndex;
    }
    return inIndex;
}

void CatalogSkim::Found(SInt16 inIndex, ConstStringPtr inName) {
    if (!IsKnown(inIndex)) return Stop();
    const ConstStringPtr name = mItems[std::size_t(inIndex - mFirst)].name;
    if (std::memcmp(name, inName, name[0] + std::size_t{1}) != 0) Stop();
}

// False when there is nothing more to be known.
bool CatalogSkim::ReadOn() {
    static FSCatalogInfo sInfos[kPortion];
    mFirst += SInt32(mItems.size());
    mItems.resize(kPortion);
    ItemCount count = 0;
    Boolean isChanged = false;
    if (!mIsAtEnd) {
        const OSErr err = FSGetCatalogInfoBulk(mIterator, kPortion, &count, &isChanged,
                                               mMatch.SkimmedInfo() | kFSCatInfoValence, sInfos,
                                               nullptr, mItems.data(), nullptr);
        mIsAtEnd = err != noErr;
    }
    mItems.resize(isChanged ? 0 : count);
    mMustBeRead.clear();
    for (std::size_t i = 0; i < mItems.size(); ++i) {
        mMustBeRead.push_back(sInfos[i].valence > 0 || mMatch.MayMatch(sInfos[i], mItems[i].name));
    }
    if (mItems.empty()) Stop();
    return !mItems.empty();
}
