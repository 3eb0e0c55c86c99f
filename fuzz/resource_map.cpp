// Resource forks and lists of strings of any origin: what can be read must be written and read
// again the same.
#include <algorithm>
#include <cstdlib>

#include "resource_manager/fork.h"
#include "text_utilities/string_list.h"

namespace {

bool IsSame(const carbon::StoredResource& inFirst, const carbon::StoredResource& inSecond) {
    return inFirst.id == inSecond.id && inFirst.attributes == inSecond.attributes &&
           inFirst.name == inSecond.name &&
           std::equal(inFirst.data.begin(), inFirst.data.end(), inSecond.data.begin(),
                      inSecond.data.end());
}

bool IsSame(const carbon::StoredType& inFirst, const carbon::StoredType& inSecond) {
    return inFirst.type == inSecond.type &&
           std::equal(inFirst.resources.begin(), inFirst.resources.end(),
                      inSecond.resources.begin(), inSecond.resources.end(),
                      [](const auto& a, const auto& b) { return IsSame(a, b); });
}

void ExamineList(std::span<const UInt8> inList) {
    Str255 string;
    for (const SInt16 index : {SInt16(0), SInt16(1), SInt16(2), SInt16(300), SInt16(32767)})
        carbon::StringInList(inList, index, string);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inBytes, size_t inSize) {
    carbon::StoredFork fork, again;
    ExamineList({inBytes, inSize});
    if (carbon::ParseFork({inBytes, inSize}, &fork) != 0) return 0;
    std::vector<UInt8> bytes;
    // Resources may share their data, so that a small fork means more than a fork can hold.
    if (carbon::BuildFork(fork, &bytes) != 0) return 0;
    if (carbon::ParseFork(bytes, &again) != 0 || fork.reserved != again.reserved) abort();
    const bool isSame =
        std::equal(fork.types.begin(), fork.types.end(), again.types.begin(), again.types.end(),
                   [](const auto& a, const auto& b) { return IsSame(a, b); });
    if (!isSame) abort();
    for (const auto& type : fork.types)
        for (const auto& resource : type.resources) ExamineList(resource.data);
    return 0;
}
