// What is going onto a disc, as found on the host: plain facts, gathered before anything is
// written.
#pragma once

#include <Carbon/MacTypes.h>
#include <sys/stat.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace recorder {

struct SourceNode {
    enum class Kind { Folder, File, Link };

    Kind kind = Kind::Folder;
    size_t parent = 0;  // index; 0, the root of the disc, is its own
    std::string name;   // on the disc: the host's bytes
    std::string path;   // absolute, of an added item; empty below it, where PathOf puts it together
    std::string target;  // of a link
    struct stat facts = {};
    OSType type = 0, creator = 0;  // 0 where the file has none
    std::vector<UInt8> contents;   // of a file that is not on the host: a companion made for it
};

struct SourceTree {
    std::vector<SourceNode> nodes;  // [0] the root; parents first, within a folder names descending
    std::vector<std::string> report;  // one line for each item left out or changed, by name
    std::vector<std::string>
        unreadable;  // one line each; a disc without them is not the disc that was asked for
    UInt64 contentBytes = 0;  // of all files, each rounded up to whole blocks of 2048

    std::string PathOf(size_t inIndex) const;
};

// What a walk tells while it runs, and asks: false ends it with BurnCancelled.
using WalkObserver = std::function<bool(size_t inFound, const std::string& inFolder)>;

// Looks at `inPaths` (absolute; followed when they are symbolic links) and all that is below them.
// Fails with dupFNErr when two of them have the same last name, with fnfErr when one is not there.
SourceTree WalkSources(const std::vector<std::string>& inPaths, bool inWithFinderInfo,
                       const WalkObserver& inObserver);

// The last name of a path, without trailing slashes.
std::string LeafName(const std::string& inPath);

}  // namespace recorder
