// The companion of one object on disk: found, read, replaced at one stroke.
#pragma once

#include <span>

#include "file_manager/metadata/apple_double_document.h"
#include "file_manager/metadata/metadata.h"
#include "file_manager/metadata/object_guard.h"
#include "file_manager/numbers/shared_counter.h"

namespace carbon {

// A companion as it was read. Without one the document holds what extended attributes told.
struct Companion {
    CompanionState state = CompanionState::kNone;
    UniqueFd file;  // open for reading; where a resource fork is in an attribute, a copy of that
    AppleDoubleDocument document;
    UInt32 forkOffset = 0;  // in `file`
    UInt32 forkLength = 0;
};

// The errors of reading that are no matter of form: afpAccessDenied, ioErr, tmfoErr.
OSErr ReadCompanion(const MetadataOwner& inOwner, Companion* outCompanion);

// Writes `ioCompanion` with its own fork, or with `inFork` in its place, and puts it in the place
// of the old one. Only under the object's guard.
OSErr ReplaceCompanion(const MetadataOwner& inOwner, const ObjectGuard& inGuard,
                       const Companion& inCompanion);
OSErr ReplaceCompanion(const MetadataOwner& inOwner, const ObjectGuard& inGuard,
                       const Companion& inCompanion, std::span<const UInt8> inFork);

// Counts the companions that any process of the user has replaced, for those who keep one open.
SharedCounter& ReplacedCompanions();

// The name that a companion of this object is written under at first: one for each user, since
// guards are a user's.
inline constexpr char kUnfinishedPrefix[] = "._~unfinished-";
std::string UnfinishedCompanion(const MetadataOwner& inOwner, const struct stat& inObject);

// Whether an open file is a plain one of no bytes, which in a companion's place is as good as none.
bool IsEmptyFile(int inFile);

// errno as a code, for the companion of an object that is there.
OSErr CompanionError(int inErrno);

}  // namespace carbon
