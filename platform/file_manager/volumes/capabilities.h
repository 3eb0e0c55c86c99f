// What a volume can do, and whether it may be changed.
#pragma once

#include <Platform/Platform.h>

#include "file_manager/volumes/volume_registry.h"

namespace carbon {

// False where an option of the mount took it away.
inline bool Lacks(const Volume& inVolume, OptionBits inOption) {
    return (inVolume.options & inOption) != 0;
}

// A server's, or said to be one.
bool IsRemote(const Volume& inVolume);

// vMAttrib and vMExtendedAttributes.
UInt32 AttributesOf(const Volume& inVolume);
UInt32 ExtendedAttributesOf(const Volume& inVolume);

// vMServerAdr: not 0 for a remote volume, the same for all of one server.
SInt32 ServerAddressOf(const Volume& inVolume);

// wPrErr where the disk is write-protected, vLckdErr where software locked it.
OSErr CheckWritable(const Volume& inVolume);

}  // namespace carbon
