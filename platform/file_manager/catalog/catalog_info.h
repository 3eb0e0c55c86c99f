// What FSGetCatalogInfo tells about an object.
#pragma once

#include "file_manager/catalog/objects.h"
#include "file_manager/metadata/metadata.h"

namespace carbon {

// Fills the fields asked for; only bits that a caller may ask for are given.
OSErr GetCatalogInfo(Objects& ioObjects, const Object& inObject, FSCatalogInfoBitmap inWhich,
                     FSCatalogInfo* outInfo);

// What a caller may ask for.
inline constexpr FSCatalogInfoBitmap kKnownInfo = kFSCatInfoGettableInfo | kFSCatInfoUserAccess;

// The records of Finder information, as far as they are asked for.
void PutFinderInfo(const Metadata& inMetadata, FSCatalogInfoBitmap inWhich, FSCatalogInfo* outInfo);

// A name on disk as callers see it, cut to what the record holds.
void SetUnicodeName(const std::string& inDiskName, HFSUniStr255* outName);

// The number by which an object is known: a folder's directory ID; for a file one made from its
// inode, above all directory IDs.
UInt32 NodeIDOf(Objects& ioObjects, const Object& inObject);

// Seconds of Unix time: the date that the companion keeps, else the moment of birth, else the
// oldest one known.
SInt64 CreationTimeOf(const ObjectStatus& inStatus, const AppleDoubleFacts& inFacts);

// Read 4, write 2, execute or search 1, as in a mode. A link's own say nothing and grant all.
UInt8 UserAccessTo(const Object& inObject);

// What the user may not do in a folder: bit 0 see folders, 1 see files, 2 make changes; bit 7 when
// the user is not its owner. 0 for a file.
UInt8 PrivilegesOf(const Object& inObject);

}  // namespace carbon
