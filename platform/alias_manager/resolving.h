// From an alias to the object it means.
#pragma once

#include "alias_manager/alias_record.h"
#include "file_manager/catalog/objects.h"

namespace carbon {

// The objects an alias may mean, the best first, none twice.
struct AliasMatches {
    std::vector<Object> objects;
    Object missing;                       // with fnfErr: the place where it ought to be
    std::vector<FSVolumeRefNum> volumes;  // that were searched
};

// At most `inMost` of them. `inFrom` may be null; `inRules` are kARM... bits. nsvErr, dirNFErr,
// fnfErr when there is none.
OSErr FindMatches(Objects& ioObjects, const AliasContents& inContents, const Object* inFrom,
                  UInt32 inRules, size_t inMost, AliasMatches* outMatches);

}  // namespace carbon
