// Owns the byte order of the records of Finder information.
#include "file_manager/catalog/finder_info.h"

#include <Carbon/Endian.h>
#include <Carbon/MacErrors.h>

#include <algorithm>

#include "file_manager/metadata/companion_file.h"
#include "file_manager/metadata/metadata_entries.h"

namespace carbon {

namespace {

// Consecutive numbers, each two or four bytes wide, in place. Script and flags of the second record
// are bytes of their own and stay as they are.
void Exchange(UInt8* ioBytes, std::initializer_list<int> inWidths) {
    if (EndianU16_BtoN(1) == 1) return;
    for (const int width : inWidths) {
        std::reverse(ioBytes, ioBytes + width);
        ioBytes += width;
    }
}

}  // namespace

void ExchangeByteOrder(bool inIsFolder, Metadata* ioMetadata) {
    if (inIsFolder) {
        Exchange(ioMetadata->finderInfo, {2, 2, 2, 2, 2, 2, 2, 2});
        Exchange(ioMetadata->extFinderInfo, {2, 2, 4});
    } else {
        Exchange(ioMetadata->finderInfo, {4, 4, 2, 2, 2, 2});
        Exchange(ioMetadata->extFinderInfo, {2, 2, 2, 2});
    }
    Exchange(ioMetadata->extFinderInfo + 10, {2, 4});
}

Metadata MetadataOf(const Object& inObject) {
    Companion companion;
    Metadata metadata;
    if (ReadCompanion(inObject, &companion) != noErr) return metadata;
    metadata.companion = companion.state;
    TakeEntries(companion.document, inObject.status.IsFolder(), &metadata);
    metadata.facts.resourceLength = companion.forkLength;
    return metadata;
}

}  // namespace carbon
