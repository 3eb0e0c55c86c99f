// Rights on folders, between the system's mode bits and the bits of ioACAccess.
#pragma once

#include "file_manager/catalog/object_status.h"

namespace carbon {

// ioACAccess as a user with these rights sees it; read 4, write 2, search 1 in `inOwn`.
UInt32 AccessFromMode(mode_t inMode, UInt8 inOwn, bool inIsOwner);

// The nine bits of a mode.
mode_t ModeFromAccess(UInt32 inAccess);

// What the calling user could do with a folder of this mode, owner and group.
UInt8 OwnRights(mode_t inMode, uid_t inUser, gid_t inGroup);

}  // namespace carbon
