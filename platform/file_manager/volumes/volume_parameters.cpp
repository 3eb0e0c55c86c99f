// Owns PBHGetVolParms: the buffer that tells what a volume can do.
#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>

#include "file_manager/parameter_block.h"
#include "file_manager/volumes/capabilities.h"
#include "file_manager/volumes/volume_selection.h"

namespace carbon {

namespace {

constexpr SInt16 kVersion = 5;
constexpr UniCharCount kLongestName = 255;
// Where a buffer of version 1 ends. Handles are wider here than they were.
constexpr size_t kEndOfVersion1 = offsetof(GetVolParmsInfoBuffer, vMVolumeGrade);

GetVolParmsInfoBuffer ParametersOf(const Volume& inVolume) {
    GetVolParmsInfoBuffer buffer{};
    buffer.vMVersion = kVersion;
    buffer.vMAttrib = SInt32(AttributesOf(inVolume));
    buffer.vMServerAdr = ServerAddressOf(inVolume);
    buffer.vMForeignPrivID = fsUnixPriv;
    buffer.vMExtendedAttributes = SInt32(ExtendedAttributesOf(inVolume));
    buffer.vMMaxNameLength = kLongestName;
    return buffer;
}

OSErr GetParameters(HIOParam* ioRecord) {
    const Catalog catalog;
    const Volume* volume = VolumeByName(*catalog, ioRecord->ioNamePtr, ioRecord->ioVRefNum);
    if (!volume) return nsvErr;
    if (Lacks(*volume, kPlatformMountNoVolumeParameters)) return paramErr;
    if (ioRecord->ioReqCount < 0 || !ioRecord->ioBuffer) return paramErr;
    GetVolParmsInfoBuffer buffer = ParametersOf(*volume);
    size_t size = sizeof buffer;
    if (Lacks(*volume, kPlatformMountParametersVersion1)) {
        buffer.vMVersion = 1;
        size = kEndOfVersion1;
    }
    size = std::min(size, size_t(ioRecord->ioReqCount));
    std::memcpy(ioRecord->ioBuffer, &buffer, size);
    ioRecord->ioActCount = SInt32(size);
    return noErr;
}

}  // namespace

}  // namespace carbon

OSErr PBHGetVolParmsSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->ioParam,
                           [](HIOParam& ioRecord) { return carbon::GetParameters(&ioRecord); });
}
