// Lists of strings, as 'STR#' resources hold them: a string that is found lies inside the list, and
// one that is counted and whole is found.
#include <cstdlib>
#include <cstring>
#include <vector>

#include "text_utilities/string_list.h"

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inBytes, size_t inSize) {
    if (inSize < 2) return 0;
    const auto index = static_cast<SInt16>(inBytes[0] << 8 | inBytes[1]);
    const std::vector<UInt8> list(inBytes + 2, inBytes + inSize);
    Str255 found;
    std::memset(found, '#', sizeof found);
    carbon::StringInList(list, index, found);
    if (found[0] == 0) return 0;
    if (found[0] > list.size()) std::abort();
    if (!memmem(list.data(), list.size(), found, found[0] + size_t{1})) std::abort();
    return 0;
}
