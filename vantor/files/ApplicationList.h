// The applications that a desktop file names: creator, directory and name of each, packed, each
// entry at an even offset. The bytes may have been damaged. For DesktopFile.
#pragma once

#include <Carbon/Carbon.h>

#include <cstring>

#include "vantor/foundation/BigEndian.h"

class ApplicationList {
  public:
    explicit ApplicationList(Handle inList) : mList(inList), mSize(GetHandleSize(inList)) {}

    // The first of a creator. True when there is one; `outName` holds 256 bytes.
    bool Find(OSType inCreator, SInt32* outParID, StringPtr outName) {
        for (SInt32 at = 0; at + 9 <= mSize; at += EntryLength(at)) {
            if (NumberAt(at) == inCreator && IsWhole(at)) {
                *outParID = SInt32(NumberAt(at + 4));
                std::memcpy(outName, *mList + at + 8, std::size_t{NameLength(at)} + 1);
                return true;
            }
        }
        return false;
    }

  private:
    UInt8 NameLength(SInt32 inAt) const { return static_cast<UInt8>((*mList)[inAt + 8]); }
    SInt32 EntryLength(SInt32 inAt) const { return (9 + NameLength(inAt) + 1) & ~1; }
    bool IsWhole(SInt32 inAt) const { return inAt + 9 + NameLength(inAt) <= mSize; }
    UInt32 NumberAt(SInt32 inAt) const {
        UInt32 number;
        std::memcpy(&number, *mList + inAt, sizeof number);
        return NativeFromBigEndian(number);
    }

    Handle mList;
    SInt32 mSize;
};
