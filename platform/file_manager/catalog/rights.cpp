// Owns the order in which either side keeps reading, writing and searching.
#include "file_manager/catalog/rights.h"

#include <Carbon/Files.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

namespace carbon {

namespace {

// Read 4, write 2, search 1 to write 4, read 2, search 1.
UInt32 AccessOf(UInt32 inRights) {
    return (inRights & 4 ? 2u : 0u) | (inRights & 2 ? 4u : 0u) | (inRights & 1);
}

bool IsInGroup(gid_t inGroup) {
    if (getegid() == inGroup) return true;
    std::vector<gid_t> groups(size_t(std::max(getgroups(0, nullptr), 0)));
    const int count = getgroups(int(groups.size()), groups.data());
    groups.resize(size_t(std::max(count, 0)));
    return std::find(groups.begin(), groups.end(), inGroup) != groups.end();
}

}  // namespace

UInt32 AccessFromMode(mode_t inMode, UInt8 inOwn, bool inIsOwner) {
    const UInt32 owner = AccessOf(inMode >> 6 & 7);
    const UInt32 group = AccessOf(inMode >> 3 & 7) << 8;
    const UInt32 everyone = AccessOf(inMode & 7) << 16;
    const UInt32 own = AccessOf(inOwn) << 24;
    return owner | group | everyone | own | (inIsOwner ? UInt32(kioACAccessOwnerMask) : 0);
}

// The same exchange of two bits leads back.
mode_t ModeFromAccess(UInt32 inAccess) {
    return mode_t(AccessOf(inAccess & 7) << 6 | AccessOf(inAccess >> 8 & 7) << 3 |
                  AccessOf(inAccess >> 16 & 7));
}

UInt8 OwnRights(mode_t inMode, uid_t inUser, gid_t inGroup) {
    if (geteuid() == 0) return 7;
    if (geteuid() == inUser) return UInt8(inMode >> 6 & 7);
    return UInt8(IsInGroup(inGroup) ? inMode >> 3 & 7 : inMode & 7);
}

}  // namespace carbon
