// Owns the rules by which names in specs and entries on disk belong to each other.
#include "file_manager/catalog/lookup.h"

#include <Carbon/MacErrors.h>

#include <algorithm>

#include "file_manager/catalog/names.h"
#include "file_manager/listings/folder_listing.h"

namespace carbon {

namespace {

OSErr StatusIn(const Folder& inFolder, Entry* ioEntry) {
    return StatusOfEntry(inFolder.path, ioEntry->diskName, &ioEntry->status);
}

bool IsSame(const Volume& inVolume, const ObjectStatus& inStatus, const IdRecord& inRecord) {
    return Folders::KeptIdentity(inVolume, inStatus.identity).IsSameAs(inRecord.identity);
}

bool HasPlainName(const std::string& inDiskName) {
    const auto plain = SpecNameOf(inDiskName);
    return plain && DiskNameOf(*plain) == inDiskName;
}

// The record of an object in this folder that is called by its number. Only the number counts, so
// that the name still holds after a rename. Files have records for this purpose only.
std::optional<IdRecord> RecordInName(Folders& ioFolders, const Volume& inVolume,
                                     const Folder& inFolder, std::string_view inSpecName) {
    const auto id = IdInName(inSpecName);
    if (!id) return std::nullopt;
    const auto record = ioFolders.TableOf(inVolume).FindById(*id);
    if (!record || record->parent != inFolder.id) return std::nullopt;
    return record->isFolder && HasPlainName(record->name) ? std::nullopt : record;
}

// The best entry whose spelling differs: in the form of its accents only, else the first by bytes.
OSErr FindOtherSpelling(const Folder& inFolder, std::string_view inSpecName, Entry* outEntry) {
    std::vector<std::string> names;
    if (const OSErr error = ReadFolder(inFolder.path, &names)) return error;
    const auto folded = Folded(inSpecName);
    std::vector<std::pair<bool, std::string>> found;
    for (auto& name : names) {
        const auto spelling = SpecNameOf(name);
        if (!spelling || spelling->size() != folded.size() || Folded(*spelling) != folded) continue;
        found.emplace_back(*spelling != inSpecName, std::move(name));
    }
    if (found.empty()) return fnfErr;
    outEntry->diskName = std::min_element(found.begin(), found.end())->second;
    return StatusIn(inFolder, outEntry);
}

OSErr FindBySpelling(const Folder& inFolder, std::string_view inSpecName, Entry* outEntry) {
    const auto diskName = DiskNameOf(inSpecName);
    outEntry->diskName = diskName;
    OSErr error = StatusIn(inFolder, outEntry);
    if (error != fnfErr) return error;
    error = FindOtherSpelling(inFolder, inSpecName, outEntry);
    if (error == noErr) return noErr;
    outEntry->diskName = diskName;
    return error;
}

SInt32 NumberOf(Folders& ioFolders, const Volume& inVolume, const Folder& inFolder,
                const Entry& inEntry) {
    Folder itself;
    const auto path = PathInFolder(inFolder.path, inEntry.diskName);
    if (inEntry.status.IsFolder() && ioFolders.FindByPath(path, &itself) == noErr) return itself.id;
    IdTable& table = ioFolders.TableOf(inVolume);
    IdRecord record{0, inFolder.id, inEntry.diskName, false,
                    Folders::KeptIdentity(inVolume, inEntry.status.identity)};
    const auto known = table.FindEntry(inFolder.id, inEntry.diskName);
    if (!known) return table.Allocate(record);
    record.id = known->id;
    if (!record.identity.IsSameAs(known->identity)) table.Correct(record);
    return record.id;
}

}  // namespace

OSErr FindEntry(Folders& ioFolders, const Folder& inFolder, std::string_view inSpecName,
                Entry* outEntry) {
    if (inSpecName.empty() || inSpecName.size() > kLongestSpecName) return bdNamErr;
    if (inSpecName.find(':') != std::string_view::npos) return bdNamErr;
    if (inSpecName.find('\0') != std::string_view::npos) return bdNamErr;
    if (inSpecName == "." || inSpecName == "..") return bdNamErr;
    if (IdInName(inSpecName)) {
        const Volume* volume = ioFolders.FindVolume(inFolder.volume);
        if (!volume) return nsvErr;
        const auto record = RecordInName(ioFolders, *volume, inFolder, inSpecName);
        if (record &&
            FollowRecordIn(ioFolders, Volume(*volume), inFolder, *record, outEntry) == noErr) {
            return noErr;
        }
    }
    return FindBySpelling(inFolder, inSpecName, outEntry);
}

// A file that was replaced under its own name keeps its number.
OSErr FollowRecordIn(Folders& ioFolders, const Volume& inVolume, const Folder& inFolder,
                     IdRecord inRecord, Entry* outEntry) {
    outEntry->diskName = inRecord.name;
    const OSErr error = StatusIn(inFolder, outEntry);
    if (error == noErr && IsSame(inVolume, outEntry->status, inRecord)) return noErr;
    const bool isReplaced = error == noErr && !inRecord.isFolder && !outEntry->status.IsFolder();
    if (!isReplaced) {
        const auto name =
            NameOfInode(inFolder.path, inRecord.identity.inode, [&](const auto& inPath) {
                return StatusOfObject(inPath, &outEntry->status) == noErr &&
                       IsSame(inVolume, outEntry->status, inRecord);
            });
        if (!name) return fnfErr;
        outEntry->diskName = inRecord.name = *name;
    }
    inRecord.identity = Folders::KeptIdentity(inVolume, outEntry->status.identity);
    ioFolders.TableOf(inVolume).Correct(inRecord);
    return noErr;
}

OSErr FindUnicodeEntry(const Folder& inFolder, const std::string& inDiskName, Entry* outEntry) {
    if (inDiskName == "." || inDiskName == ".." || inDiskName.find('/') != std::string::npos ||
        inDiskName.find('\0') != std::string::npos) {
        return bdNamErr;
    }
    outEntry->diskName = inDiskName;
    OSErr error = StatusIn(inFolder, outEntry);
    if (error != fnfErr && error != bdNamErr) return error;
    std::vector<std::string> names;
    if ((error = ReadFolder(inFolder.path, &names))) return error;
    const auto folded = FoldedDiskName(inDiskName);
    std::sort(names.begin(), names.end());
    const auto found = std::find_if(names.begin(), names.end(), [&](const auto& inName) {
        return FoldedDiskName(inName) == folded;
    });
    if (found == names.end()) return fnfErr;
    outEntry->diskName = *found;
    return StatusIn(inFolder, outEntry);
}

// Most names are: short, in ASCII, without what means something else in either spelling.
bool IsItsOwnSpecName(const std::string& inDiskName) {
    return inDiskName.size() <= kLongestSpecName &&
           std::all_of(inDiskName.begin(), inDiskName.end(),
                       [](char c) { return UInt8(c) < 0x80 && c != ':' && c != '#'; });
}

std::string SpecNameOfEntry(Folders& ioFolders, const Folder& inFolder, const Entry& inEntry) {
    if (IsItsOwnSpecName(inEntry.diskName)) return inEntry.diskName;
    const auto plain = SpecNameOf(inEntry.diskName);
    if (HasPlainName(inEntry.diskName) && !IdInName(*plain)) return *plain;
    Entry found;
    if (plain && FindEntry(ioFolders, inFolder, *plain, &found) == noErr &&
        found.diskName == inEntry.diskName) {
        return *plain;
    }
    const Volume* volume = ioFolders.FindVolume(inFolder.volume);
    if (!volume) return plain.value_or("");
    const SInt32 id = NumberOf(ioFolders, Volume(*volume), inFolder, inEntry);
    return ShortenedName(inEntry.diskName, id);
}

}  // namespace carbon
