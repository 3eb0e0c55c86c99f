// Owns the names of forks.
#include "resource_manager/fork_names.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <string_view>

namespace carbon {

OSErr ForkByName(UniCharCount inLength, const UniChar* inName, ForkKind* outKind) {
    constexpr std::u16string_view kResourceForkName = u"RESOURCE_FORK";
    if (inLength > 0 && !inName) return paramErr;
    const bool isResource = inLength == kResourceForkName.size() &&
                            std::equal(kResourceForkName.begin(), kResourceForkName.end(), inName);
    if (inLength > 0 && !isResource) return errFSBadForkName;
    *outKind = isResource ? ForkKind::kResource : ForkKind::kData;
    return noErr;
}

}  // namespace carbon
