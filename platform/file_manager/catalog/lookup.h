// Names within one folder: which entry a file spec's name means, and which name an entry has in a
// file spec.
#pragma once

#include <Carbon/Files.h>

#include <string>

#include "file_manager/numbers/folders.h"

namespace carbon {

struct Entry {
    std::string diskName;
    ObjectStatus status;
};

// A name with a number means the object with that number; else the exact spelling counts, else the
// one that differs in the form of its accents, else one that differs in case. fnfErr sets
// `diskName` to what a new entry of that name would be called.
OSErr FindEntry(Folders& ioFolders, const Folder& inFolder, std::string_view inSpecName,
                Entry* outEntry);

// The entry of this folder that a file's or folder's record means, also after a renaming; the
// record is corrected then. fnfErr when it is not here.
OSErr FollowRecordIn(Folders& ioFolders, const Volume& inVolume, const Folder& inFolder,
                     IdRecord inRecord, Entry* outEntry);

// As FindEntry, for a name in UTF-8 as long as the disk allows. Where none is exact, one that
// differs in the form of its accents or in case counts.
OSErr FindUnicodeEntry(const Folder& inFolder, const std::string& inDiskName, Entry* outEntry);

// Whether a name on disk is the same in a file spec, and cannot mean anything else there.
bool IsItsOwnSpecName(const std::string& inDiskName);

// The name that leads FindEntry to this entry and to no other one.
std::string SpecNameOfEntry(Folders& ioFolders, const Folder& inFolder, const Entry& inEntry);

}  // namespace carbon
