// Looking for an alias's object on a whole volume.
#pragma once

#include <Carbon/Files.h>

#include <vector>

#include "alias_manager/alias_record.h"

namespace carbon {

// Objects anywhere on a volume that have the kind, creation date, type and creator of the alias's;
// for an alias that tells no date, its name. At most `inMost`. Without the catalog held. None on a
// volume without catalog search.
std::vector<FSSpec> LookalikesOnVolume(FSVolumeRefNum inVolume, const AliasContents& inContents,
                                       size_t inMost);

}  // namespace carbon
