// The disc being put together: what it is to hold and how it is to be written.
#pragma once

#include <Carbon/MacTypes.h>

#include <set>
#include <string>
#include <vector>

namespace recorder {

enum : OSType {
    kGenericDisc = 'Disc',  // means kDataDisc
    kDataDisc = 'Data',     // ISO 9660 level 3 with Rock Ridge and Joliet
    kHybridDisc = 'Hybr'    // the same with HFS+ beside it
};

struct DiscDocument {
    OSType kind = kDataDisc;
    std::string volumeName;  // empty: that of the first item
    std::string outputPath;  // empty: the drive chooses
    bool replace = false;    // an existing file of that name
    std::vector<std::string> paths;
    std::set<std::string> names;  // of these on the disc

    // All of them or none: dupFNErr when two items of the disc would have the same name, fnfErr
    // when one is not there.
    void Add(const std::vector<std::string>& inPaths);
};

// errAECantHandleClass for a kind of disc that cannot be written.
DiscDocument MakeDocument(OSType inKind);

}  // namespace recorder
