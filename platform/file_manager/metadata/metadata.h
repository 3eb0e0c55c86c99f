// What is kept beside a file because Linux has no place for it: Finder information, dates, the
// lock, the comment, the resource fork. It lies in the object's companion, an AppleDouble file
// "._name".
#pragma once

#include <Carbon/MacTypes.h>

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "file_manager/metadata/apple_double.h"

namespace carbon {

struct Object;

// Whose metadata is meant: an absolute path. A volume's root keeps its companion inside.
struct MetadataOwner {
    MetadataOwner(const std::string& inPath, bool inIsVolumeRoot = false);
    MetadataOwner(const char* inPath) : MetadataOwner(std::string(inPath)) {}
    MetadataOwner(const Object& inObject);

    std::string Companion() const { return CompanionPath(path, isVolumeRoot); }

    std::string path;
    bool isVolumeRoot;
};

enum class CompanionState {
    kNone,    // what there is comes from extended attributes, else it is all zero
    kSound,   // and read
    kDamaged  // read as if there were none; never written to
};

struct Metadata {
    UInt8 finderInfo[16] = {};     // an FInfo or DInfo in the machine's byte order
    UInt8 extFinderInfo[16] = {};  // an FXInfo or DXInfo; its comment ID with it
    AppleDoubleFacts facts;        // dates, lock, comment, length of the resource fork
    CompanionState companion = CompanionState::kNone;
};

// fnfErr and its like when the object is gone; a damaged companion is no error here.
OSErr ReadMetadata(const MetadataOwner& inOwner, Metadata* outMetadata);

// Reads, lets `inChange` edit and writes what it changed, alone among all processes. Everything but
// the fork's length may be edited; what the companion holds beyond that stays as it is. A process
// killed on the way leaves the old metadata or the new.
// Returns fnfErr, afpAccessDenied, wPrErr, dskFulErr (the old metadata stays), ioErr for a damaged
// companion, bdNamErr for a name too long to have one, fBsyErr when others keep the object locked
// for seconds or a comment's change meets an open resource fork.
using MetadataChange = std::function<void(Metadata* ioMetadata)>;
OSErr ChangeMetadata(const MetadataOwner& inOwner, const MetadataChange& inChange);

// Renames or moves an object together with its companion; what has the new name already makes
// dupFNErr. Killed on the way, the object has its metadata under the name that it has then.
OSErr MoveWithMetadata(const std::string& inFrom, const std::string& inTo);

// For an object that was just created or deleted at this path: a companion that lies there is
// another one's remains. One that is no AppleDouble file stays. noErr when there was none.
OSErr RemoveMetadata(const MetadataOwner& inOwner);

// Removes companions without their file, which nobody sees, so that an apparently empty folder can
// be removed. noErr also when something is left.
OSErr RemoveOrphanedMetadata(const std::string& inFolder);

// The whole resource fork, empty when there is none. ioErr for a damaged companion.
OSErr ReadResourceFork(const MetadataOwner& inOwner, std::vector<UInt8>* outBytes);

// Puts a whole new resource fork in place of the old one at one stroke: whoever looks, also after
// this process was killed or the disk was full, finds the old one or the new. Forks that this
// process has open go on with the new one. Codes as ChangeMetadata; opWrErr when another process
// has the fork open for writing.
OSErr ReplaceResourceFork(const MetadataOwner& inOwner, std::span<const UInt8> inBytes);

}  // namespace carbon
