// Metadata as entries of an AppleDouble file.
#pragma once

#include "file_manager/metadata/apple_double_document.h"
#include "file_manager/metadata/metadata.h"

namespace carbon {

// `inIsFolder` decides which records the Finder information consists of.
void TakeEntries(const AppleDoubleDocument& inDocument, bool inIsFolder, Metadata* ioMetadata);

// Finder information alone, of kFinderInfoSize bytes as a file keeps them.
void TakeFinderInfo(std::span<const UInt8> inBytes, bool inIsFolder, Metadata* ioMetadata);

// Writes what differs between the two; an entry that becomes needed is added.
void PutEntries(const Metadata& inBefore, const Metadata& inAfter, bool inIsFolder,
                AppleDoubleDocument* ioDocument);

// Adds the entries of fixed size that are missing, as "nothing known": then each of them can be
// changed without moving another one.
void PutFixedEntries(AppleDoubleDocument* ioDocument);

}  // namespace carbon
