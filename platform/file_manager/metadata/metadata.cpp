// Owns reading and changing metadata and whole resource forks.
#include "file_manager/metadata/metadata.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstring>

#include "file_manager/catalog/objects.h"
#include "file_manager/forks/fork_locks.h"
#include "file_manager/forks/fork_table.h"
#include "file_manager/metadata/companion_file.h"
#include "file_manager/metadata/metadata_entries.h"

namespace carbon {

namespace {

constexpr size_t kPage = 4096;
constexpr size_t kLongestFork = 0x7FFFFFFF;

bool IsSame(const Metadata& inOne, const Metadata& inOther) {
    return std::memcmp(inOne.finderInfo, inOther.finderInfo, sizeof inOne.finderInfo) == 0 &&
           std::memcmp(inOne.extFinderInfo, inOther.extFinderInfo, sizeof inOne.extFinderInfo) ==
               0 &&
           inOne.facts == inOther.facts;
}

Metadata MetadataIn(const Companion& inCompanion, bool inIsFolder) {
    Metadata metadata;
    metadata.companion = inCompanion.state;
    TakeEntries(inCompanion.document, inIsFolder, &metadata);
    metadata.facts.resourceLength = inCompanion.forkLength;
    return metadata;
}

// Whoever remembers what is in a folder looks at its times. Its modification date stays.
void MarkChanged(const std::string& inFolder) {
    struct stat facts;
    if (stat(inFolder.c_str(), &facts) != 0) return;
    const timespec times[2] = {facts.st_atim, {0, UTIME_OMIT}};
    utimensat(AT_FDCWD, inFolder.c_str(), times, 0);
}

// One write within a page, which the kernel ends even for a process that is being killed.
OSErr ChangeInPlace(const MetadataOwner& inOwner, const AppleDoubleDocument& inBefore,
                    const AppleDoubleDocument& inAfter) {
    const auto before = inBefore.BytesBeforeFork(0);
    const auto after = inAfter.BytesBeforeFork(0);
    if (before.size() != after.size()) return fBsyErr;
    if (before == after) return noErr;  // a date that the companion cannot hold became the same one
    const auto [first, ignored] = std::mismatch(after.begin(), after.end(), before.begin());
    const auto [last, alsoIgnored] = std::mismatch(after.rbegin(), after.rend(), before.rbegin());
    const auto start = size_t(first - after.begin());
    const auto length = size_t(last.base() - first);
    if (start < AppleDoubleListEnd(after) || start / kPage != (start + length - 1) / kPage)
        return fBsyErr;
    const UniqueFd file(open(inOwner.Companion().c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
    if (!file) return CompanionError(errno);
    const auto there = BytesAt(file.Get(), start, length);
    if (!std::equal(there.begin(), there.end(), before.begin() + SInt64(start),
                    before.begin() + SInt64(start + length)))
        return fBsyErr;
    const auto count = pwrite(file.Get(), &*first, length, off_t(start));
    if (count < 0) return CompanionError(errno);
    MarkChanged(ParentOfPath(inOwner.Companion()));
    return size_t(count) == length ? OSErr(noErr) : OSErr(ioErr);
}

OSErr TakeForChange(const MetadataOwner& inOwner, ObjectGuard* outGuard, Companion* outCompanion) {
    if (const OSErr error = outGuard->Take(inOwner.path)) return error;
    if (const OSErr error = ReadCompanion(inOwner, outCompanion)) return error;
    return outCompanion->state == CompanionState::kDamaged ? OSErr(ioErr) : OSErr(noErr);
}

bool IsWrittenInPlace(const MetadataOwner& inOwner, const ObjectGuard& inGuard) {
    return S_ISREG(inGuard.Facts().st_mode) &&
           UsesOfFork(inOwner.path, Fork::kResource) & kWritesInPlace;
}

// Whether it is this process that has the resource fork to itself.
bool WritesAlone(const struct stat& inFacts) {
    const auto paths = OpenPathsTo(inFacts.st_dev, inFacts.st_ino, Fork::kResource);
    return std::any_of(paths.begin(), paths.end(), [](const NumberedFork& inPath) {
        return inPath.fork->GetFacts().uses & kWritesAlone;
    });
}

}  // namespace

MetadataOwner::MetadataOwner(const std::string& inPath, bool inIsVolumeRoot)
    : path(inPath), isVolumeRoot(inIsVolumeRoot || inPath == "/") {}

MetadataOwner::MetadataOwner(const Object& inObject)
    : MetadataOwner(inObject.path, inObject.spec.parID == fsRtParID) {}

OSErr ReadMetadata(const MetadataOwner& inOwner, Metadata* outMetadata) {
    ObjectStatus status;
    if (const OSErr error = StatusOfObject(inOwner.path, &status)) return error;
    Companion companion;
    if (const OSErr error = ReadCompanion(inOwner, &companion)) return error;
    *outMetadata = MetadataIn(companion, status.IsFolder());
    return noErr;
}

OSErr ChangeMetadata(const MetadataOwner& inOwner, const MetadataChange& inChange) {
    ObjectGuard guard;
    Companion companion;
    if (const OSErr error = TakeForChange(inOwner, &guard, &companion)) return error;
    const bool isFolder = S_ISDIR(guard.Facts().st_mode);
    const Metadata before = MetadataIn(companion, isFolder);
    Metadata after = before;
    inChange(&after);
    after.facts.resourceLength = before.facts.resourceLength;
    if (IsSame(before, after)) return noErr;
    const AppleDoubleDocument old = companion.document;
    PutEntries(before, after, isFolder, &companion.document);
    if (IsWrittenInPlace(inOwner, guard)) return ChangeInPlace(inOwner, old, companion.document);
    return ReplaceCompanion(inOwner, guard, companion);
}

OSErr ReadResourceFork(const MetadataOwner& inOwner, std::vector<UInt8>* outBytes) {
    outBytes->clear();
    ObjectStatus status;
    if (const OSErr error = StatusOfObject(inOwner.path, &status)) return error;
    Companion companion;
    if (const OSErr error = ReadCompanion(inOwner, &companion)) return error;
    if (companion.state == CompanionState::kDamaged) return ioErr;
    if (companion.forkLength == 0) return noErr;
    *outBytes = BytesAt(companion.file.Get(), companion.forkOffset, companion.forkLength);
    return outBytes->size() == companion.forkLength ? OSErr(noErr) : OSErr(ioErr);
}

OSErr ReplaceResourceFork(const MetadataOwner& inOwner, std::span<const UInt8> inBytes) {
    ObjectGuard guard;
    Companion companion;
    if (inBytes.size() > kLongestFork) return fileBoundsErr;
    if (const OSErr error = TakeForChange(inOwner, &guard, &companion)) return error;
    if (!S_ISREG(guard.Facts().st_mode)) return notAFileErr;
    const bool isWritten = UsesOfFork(inOwner.path, Fork::kResource) & kWrites;
    if (isWritten && !WritesAlone(guard.Facts())) return opWrErr;
    if (isWritten) PutFixedEntries(&companion.document);
    return ReplaceCompanion(inOwner, guard, companion, inBytes);
}

}  // namespace carbon
