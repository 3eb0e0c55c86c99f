// Who has which fork of a file open and how: kept by the kernel as locks on bytes far behind the
// end of the file, so that every process sees them and none outlives its holder.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

#include "posix/UniqueFd.h"

namespace carbon {

enum class Fork : UInt8 { kData, kResource };

// What one path holds. Each bit is one byte's shared lock: many may hold it.
enum ForkUse : UInt8 {
    kReads = 0x01,
    kWrites = 0x02,
    kDeniesReading = 0x04,  // to the other paths
    kDeniesWriting = 0x08,
    kWritesAlone = 0x10,     // a writer that admits no other one
    kWritesTogether = 0x20,  // one that admits others of its kind
    kWritesInPlace = 0x40    // has begun to write into the companion, which must stay now
};
typedef UInt8 ForkUses;

// `inFile` is the file itself, open for reading; the locks last until it is closed.
OSErr HoldForkUses(int inFile, Fork inFork, ForkUses inUses);

// Ends these locks, and those on ranges. Closing alone leaves them to a child that was forked
// meanwhile, until its exec.
void ReleaseForkUses(int inFile);

// What others hold; `inFile` may be any opening of the file, and what it holds itself is not told.
ForkUses ForkUsesOfOthers(int inFile, Fork inFork);

// The same for the file at a path; none for what cannot be opened, and so has no forks open.
ForkUses UsesOfFork(const std::string& inPath, Fork inFork);

// Whether anybody has a fork of that file open, asked with one opening; `inFile` may be any.
bool IsAnyForkInUse(const std::string& inPath);
bool IsAnyForkInUse(int inFile);

// Opens a file in an open folder for asking; null when it may not be read.
UniqueFd OpenToAsk(int inFolder, const std::string& inName);

}  // namespace carbon
