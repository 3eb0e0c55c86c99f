// Owns finding a string in a list.
#include "text_utilities/string_list.h"

#include <algorithm>

namespace carbon {

void StringInList(std::span<const UInt8> inList, SInt16 inIndex, Str255 outString) {
    outString[0] = 0;
    const int count = inList.size() < 2 ? 0 : inList[0] << 8 | inList[1];
    if (inIndex < 1 || inIndex > count) return;
    size_t at = 2;
    for (int i = 1; i < inIndex && at < inList.size(); ++i) at += 1u + inList[at];
    // Lists lie about their count.
    if (at >= inList.size() || inList[at] >= inList.size() - at) return;
    std::copy_n(inList.begin() + SInt64(at), 1 + inList[at], outString);
}

}  // namespace carbon
