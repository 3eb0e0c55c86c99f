// Version strings as numbers.
#pragma once

#include <CoreFoundation/CFBase.h>

#include <string_view>

namespace carbon {

// Major revision in BCD, minor and bug-fix digit, stage, build, from the high byte down; 0 for a
// string that is no version.
UInt32 VersionNumberFromString(std::u16string_view inText);

}  // namespace carbon
