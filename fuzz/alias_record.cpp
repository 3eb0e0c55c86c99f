// Any bytes as an alias record: read, and when they are one, written, read again and resolved.
#include <cstdlib>

#include "alias_manager/alias_bytes.h"
#include "alias_manager/alias_record.h"

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inData, size_t inSize) {
    const auto contents = carbon::AliasFromBytes({inData, inSize});
    if (!contents) return 0;
    const auto bytes = carbon::BytesOfAlias(*contents);
    const auto again = carbon::AliasFromBytes(bytes);
    if (!again || carbon::BytesOfAlias(*again) != bytes) std::abort();
    std::string path;
    if (carbon::PathFromAlias({inData, inSize}, &path) == noErr && path.empty()) std::abort();
    return 0;
}
