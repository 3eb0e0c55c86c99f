// Order of texts.
#pragma once

#include <CoreFoundation/CFString.h>

#include <string_view>

namespace carbon {

CFComparisonResult Compare(std::u16string_view inOne, std::u16string_view inOther,
                           CFOptionFlags inFlags);

}  // namespace carbon
