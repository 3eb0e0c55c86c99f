// Owns the capability bits of volumes: a bit is set where the call behind it works.
#include "file_manager/volumes/capabilities.h"

#include <Carbon/MacErrors.h>
#include <arpa/inet.h>

#include <algorithm>
#include <array>

#include "file_manager/catalog/reference.h"

namespace carbon {

namespace {

constexpr UInt32 Bit(int inBit) {
    return UInt32(1) << inBit;
}

struct Capability {
    OptionBits without;  // the option that takes it away
    int bit;
};
constexpr std::array<Capability, 9> kCapabilities = {{
    {kPlatformMountNoOpenDeny, bHasOpenDeny},
    {kPlatformMountNoCopyFile, bHasCopyFile},
    {kPlatformMountNoMoveRename, bHasMoveRename},
    {kPlatformMountNoDesktopManager, bHasDesktopMgr},
    {kPlatformMountNoFolderLock, bHasFolderLock},
    {kPlatformMountNoUserGroupList, bHasUserGroupList},
    {kPlatformMountNoCatalogSearch, bHasCatSearch},
    {kPlatformMountNoFileIDs, bHasFileIDs},
    {kPlatformMountNoAccessControl, bAccessCntl},
}};

// What is kept in the volume's table.
constexpr UInt32 kNeedsTable = Bit(bHasDesktopMgr) | Bit(bHasCatSearch) | Bit(bHasFileIDs);

// No volume starts up a Mac, has a desktop file, or waits for a Finder without windows.
constexpr UInt32 kAlways = Bit(bNoMiniFndr) | Bit(bNoBootBlks) | Bit(bNoSysDir);

bool IgnoresCase(const Volume& inVolume) {
    constexpr std::array<std::string_view, 6> kTypes = {"vfat",  "msdos", "exfat",
                                                        "ntfs3", "cifs",  "hfsplus"};
    return std::find(kTypes.begin(), kTypes.end(), inVolume.type) != kTypes.end();
}

// Servers, and what is a program of its own, mostly cannot.
bool CanExchangeNames(const Volume& inVolume) {
    constexpr std::array<std::string_view, 4> kTypes = {"msdos", "exfat", "ntfs3", "hfsplus"};
    if (inVolume.isOnNetwork || inVolume.type.starts_with("fuse")) return false;
    return std::find(kTypes.begin(), kTypes.end(), inVolume.type) == kTypes.end();
}

// "server:/path", "//server/path"
std::string ServerIn(const std::string& inSource) {
    const auto start = std::min(inSource.find_first_not_of('/'), inSource.size());
    return inSource.substr(start, inSource.find_first_of(":/", start) - start);
}

}  // namespace

bool IsRemote(const Volume& inVolume) {
    return inVolume.isOnNetwork || Lacks(inVolume, kPlatformMountRemote);
}

UInt32 AttributesOf(const Volume& inVolume) {
    UInt32 bits = kAlways;
    for (const auto& capability : kCapabilities) {
        if (!Lacks(inVolume, capability.without)) bits |= Bit(capability.bit);
    }
    if (inVolume.tablePath.empty()) bits &= ~kNeedsTable;
    if (IsRemote(inVolume)) bits |= Bit(bHasExtFSVol);
    if (!inVolume.isFolder) bits |= Bit(bNoVNEdit);
    return bits;
}

UInt32 ExtendedAttributesOf(const Volume& inVolume) {
    UInt32 bits = Bit(bSupports2TBFiles) | Bit(bSupportsLongNames) | Bit(bSupportsMultiScriptNames);
    bits |= Bit(bSupportsNamedForks) | Bit(bSupportsSymbolicLinks) | Bit(bIsCasePreserving);
    if (!IgnoresCase(inVolume)) bits |= Bit(bIsCaseSensitive);
    const bool mayExchange = !Lacks(inVolume, kPlatformMountNoExchange);
    if (mayExchange && CanExchangeNames(inVolume)) bits |= Bit(bSupportsFSExchangeObjects);
    const bool isEjectable = inVolume.options & kPlatformMountEjectable;
    if (isEjectable) bits |= Bit(bIsEjectable) | Bit(bIsRemovable);
    return bits;
}

SInt32 ServerAddressOf(const Volume& inVolume) {
    if (!IsRemote(inVolume)) return 0;
    if (inVolume.isFolder) return SInt32(INADDR_LOOPBACK);
    const auto server = ServerIn(inVolume.source);
    in_addr address;
    if (inet_pton(AF_INET, server.c_str(), &address) == 1) return SInt32(ntohl(address.s_addr));
    return SInt32(HashOfName(server) | 1);
}

OSErr CheckWritable(const Volume& inVolume) {
    if (inVolume.isReadOnly) return wPrErr;
    const bool isLocked = inVolume.options & kPlatformMountSoftwareLocked;
    return isLocked ? OSErr(vLckdErr) : OSErr(noErr);
}

}  // namespace carbon
