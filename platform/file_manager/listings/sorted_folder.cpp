// Owns the order of a folder's entries, and its keeping while names come and go.
#include "file_manager/listings/sorted_folder.h"

#include <dirent.h>

#include <algorithm>
#include <unordered_set>

#include "file_manager/catalog/names.h"
#include "file_manager/catalog/object_status.h"
#include "file_manager/listings/folder_listing.h"

namespace carbon {

namespace {

constexpr size_t kKeyLength = 16;
constexpr size_t kCompanionPrefix = 2;  // "._"

bool IsAscii(std::string_view inName) {
    return std::all_of(inName.begin(), inName.end(), [](char c) { return UInt8(c) < 0x80; });
}

char FoldedAscii(char inCharacter) {
    return inCharacter >= 'A' && inCharacter <= 'Z' ? char(inCharacter + 32) : inCharacter;
}

// As the name is shown, small letters for capitals.
std::string FoldedForOrder(std::string_view inDiskName) {
    if (IsAscii(inDiskName)) {
        std::string name(inDiskName);
        for (char& character : name) character = FoldedAscii(character);
        return name;
    }
    const auto shown = SpecNameOf(inDiskName);
    return shown ? Folded(*shown) : FoldedDiskName(inDiskName);
}

std::array<UInt64, 2> KeyOf(std::string_view inFolded) {
    std::array<UInt64, 2> key{};
    for (size_t i = 0; i < kKeyLength; ++i) {
        const UInt8 byte = i < inFolded.size() ? UInt8(inFolded[i]) : 0;
        key[i / 8] = key[i / 8] << 8 | byte;
    }
    return key;
}

std::array<UInt64, 2> KeyOfDiskName(std::string_view inDiskName) {
    if (!IsAscii(inDiskName)) return KeyOf(FoldedForOrder(inDiskName));
    char folded[kKeyLength];
    const size_t length = std::min(inDiskName.size(), kKeyLength);
    std::transform(inDiskName.begin(), inDiskName.begin() + SInt32(length), folded, FoldedAscii);
    return KeyOf({folded, length});
}

}  // namespace

bool SortedFolder::IsBefore(const Entry& inOne, const Entry& inOther) const {
    if (inOne.key != inOther.key) return inOne.key < inOther.key;
    const auto one = NameOf(inOne), other = NameOf(inOther);
    const auto foldedOne = FoldedForOrder(one), foldedOther = FoldedForOrder(other);
    return foldedOne != foldedOther ? foldedOne < foldedOther : one < other;
}

SortedFolder::Entry SortedFolder::MakeEntry(std::string_view inDiskName, bool inIsFolder) {
    const auto offset = UInt32(mNames.size());
    mNames += inDiskName;
    return {KeyOfDiskName(inDiskName), offset, UInt16(inDiskName.size()), inIsFolder, false};
}

OSErr SortedFolder::Read(const std::string& inPath) {
    *this = {};
    std::unordered_set<std::string> owners;
    const OSErr error = VisitFolder(inPath, [&](std::string_view inName, UInt8 inType) {
        const bool isFolder = IsFolderEntry(inPath, inName, inType);
        if (IsHiddenEntry(inName, isFolder)) {
            owners.emplace(inName.substr(kCompanionPrefix));
            return;
        }
        mEntries.push_back(MakeEntry(inName, isFolder));
        if (!mEntries.back().isFolder) ++mFileCount;
    });
    mHasCompanions = !owners.empty();
    if (error != noErr || !mHasCompanions) return error;
    for (auto& entry : mEntries) entry.hasCompanion = owners.count(std::string(NameOf(entry)));
    return noErr;
}

// Whoever only counts needs no order.
void SortedFolder::Sort() {
    if (mIsSorted) return;
    std::sort(mEntries.begin(), mEntries.end(),
              [this](const Entry& a, const Entry& b) { return IsBefore(a, b); });
    mIsSorted = true;
}

std::deque<SortedFolder::Entry>::iterator SortedFolder::Find(std::string_view inDiskName) {
    Sort();
    const auto before = mNames.size();
    const Entry wanted = MakeEntry(inDiskName, false);
    const auto found =
        std::lower_bound(mEntries.begin(), mEntries.end(), wanted,
                         [this](const Entry& a, const Entry& b) { return IsBefore(a, b); });
    mNames.resize(before);
    return found;
}

void SortedFolder::MarkCompanion(std::string_view inOwner, bool inHasOne) {
    const auto found = Find(inOwner);
    if (found != mEntries.end() && NameOf(*found) == inOwner) found->hasCompanion = inHasOne;
}

void SortedFolder::Add(std::string_view inDiskName, bool inIsFolder) {
    if (IsHiddenEntry(inDiskName, inIsFolder)) {
        mHasCompanions = true;
        MarkCompanion(inDiskName.substr(kCompanionPrefix), true);
        return;
    }
    const auto found = Find(inDiskName);
    mFiles.clear();
    if (found != mEntries.end() && NameOf(*found) == inDiskName) {
        mFileCount += UInt32(found->isFolder) - UInt32(inIsFolder);
        found->isFolder = inIsFolder;
        return;
    }
    mEntries.insert(found, MakeEntry(inDiskName, inIsFolder));
    if (!inIsFolder) ++mFileCount;
}

void SortedFolder::Remove(std::string_view inDiskName, bool inIsFolder) {
    if (IsHiddenEntry(inDiskName, inIsFolder)) {
        MarkCompanion(inDiskName.substr(kCompanionPrefix), false);
        return;
    }
    const auto found = Find(inDiskName);
    if (found == mEntries.end() || NameOf(*found) != inDiskName) return;
    if (!found->isFolder) --mFileCount;
    mEntries.erase(found);
    mFiles.clear();
}

void SortedFolder::Tell(const Entry& inEntry, ListedEntry* outEntry) const {
    outEntry->diskName = NameOf(inEntry);
    outEntry->isFolder = inEntry.isFolder;
    outEntry->hasCompanion = inEntry.hasCompanion;
}

bool SortedFolder::Get(UInt32 inIndex, ListedEntry* outEntry) {
    if (inIndex >= mEntries.size()) return false;
    Sort();
    Tell(mEntries[inIndex], outEntry);
    return true;
}

bool SortedFolder::GetFile(UInt32 inIndex, ListedEntry* outEntry) {
    if (inIndex >= mFileCount) return false;
    Sort();
    if (mFiles.empty()) {
        for (UInt32 i = 0; i < mEntries.size(); ++i) {
            if (!mEntries[i].isFolder) mFiles.push_back(i);
        }
    }
    Tell(mEntries[mFiles[inIndex]], outEntry);
    return true;
}

}  // namespace carbon
