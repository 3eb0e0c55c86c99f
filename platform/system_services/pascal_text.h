// A Pascal string's text as it is shown to people.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

#include "text_utilities/mac_roman.h"

namespace carbon {

inline std::string Utf8FromPascal(ConstStr255Param inText) {
    return Utf8FromMacRoman({reinterpret_cast<const char*>(inText) + 1, inText[0]});
}

}  // namespace carbon
