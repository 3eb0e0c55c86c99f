// A companion that anyone may have written: what is sound in it must come through a rewriting
// whole.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

#include "file_manager/metadata/apple_double_document.h"
#include "file_manager/metadata/metadata_entries.h"
#include "posix/UniqueFd.h"

using namespace carbon;

namespace {

UniqueFd FileWith(std::span<const UInt8> inBytes) {
    UniqueFd file(memfd_create("companion", MFD_CLOEXEC));
    if (!file || write(file.Get(), inBytes.data(), inBytes.size()) != ssize_t(inBytes.size()))
        std::abort();
    return file;
}

std::vector<UInt8> ForkOf(const AppleDoubleDocument& inDocument, int inFile) {
    const auto& entry = inDocument.ForkEntry();
    auto fork = BytesAt(inFile, entry.offset, entry.length);
    if (fork.size() != entry.length) std::abort();
    return fork;
}

// As changing the metadata rewrites it.
AppleDoubleDocument Changed(const AppleDoubleDocument& inDocument, bool inIsFolder) {
    Metadata before;
    TakeEntries(inDocument, inIsFolder, &before);
    Metadata after = before;
    after.finderInfo[0] ^= 1;
    after.facts.created = 1000000000;
    after.facts.isLocked = !before.facts.isLocked;
    after.facts.comment += "more";
    AppleDoubleDocument document = inDocument;
    PutEntries(before, after, inIsFolder, &document);
    PutFixedEntries(&document);
    return document;
}

void CheckSame(const AppleDoubleDocument& inOne, const AppleDoubleDocument& inOther,
               bool inIsFolder) {
    Metadata one, other;
    TakeEntries(inOne, inIsFolder, &one);
    TakeEntries(inOther, inIsFolder, &other);
    one.facts.resourceLength = other.facts.resourceLength;
    if (!(one.facts == other.facts)) std::abort();
}

void Examine(const AppleDoubleDocument& inDocument, int inFile, bool inIsFolder) {
    const auto fork = ForkOf(inDocument, inFile);
    const auto changed = Changed(inDocument, inIsFolder);
    auto bytes = changed.BytesBeforeFork(UInt32(fork.size()));
    bytes.insert(bytes.end(), fork.begin(), fork.end());
    const auto file = FileWith(bytes);
    const auto again = AppleDoubleDocument::Read(file.Get());
    if (!again || ForkOf(*again, file.Get()) != fork) std::abort();
    CheckSame(changed, *again, inIsFolder);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inData, size_t inSize) {
    const auto file = FileWith({inData, inSize});
    const auto document = AppleDoubleDocument::Read(file.Get());
    if (!document) return 0;
    Examine(*document, file.Get(), false);
    Examine(*document, file.Get(), true);
    return 0;
}
