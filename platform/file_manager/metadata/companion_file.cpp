// Owns the way of companions to disk and back.
#include "file_manager/metadata/companion_file.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <functional>

#include "file_manager/catalog/object_status.h"
#include "file_manager/numbers/state_folder.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr const char* kFinderInfoAttribute = "user.com.apple.FinderInfo";
constexpr const char* kResourceForkAttribute = "user.com.apple.ResourceFork";
constexpr size_t kCopiedAtOnce = 256 * 1024;

std::vector<UInt8> AttributeOf(const std::string& inPath, const char* inName) {
    const auto length = lgetxattr(inPath.c_str(), inName, nullptr, 0);
    if (length <= 0) return {};
    std::vector<UInt8> bytes(size_t(length) + 1);
    const auto got = lgetxattr(inPath.c_str(), inName, bytes.data(), bytes.size());
    if (got != length) return {};  // it is being replaced
    bytes.resize(size_t(got));
    return bytes;
}

OSErr WriteAll(int inFile, std::span<const UInt8> inBytes) {
    while (!inBytes.empty()) {
        const auto count = write(inFile, inBytes.data(), inBytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return CompanionError(errno);
        inBytes = inBytes.subspan(size_t(count));
    }
    return noErr;
}

OSErr TakeForkAttribute(const std::vector<UInt8>& inBytes, Companion* outCompanion) {
    outCompanion->file = UniqueFd(memfd_create("resource fork", MFD_CLOEXEC));
    if (!outCompanion->file) return OSErrFromErrno(errno);
    outCompanion->forkLength = UInt32(inBytes.size());
    return WriteAll(outCompanion->file.Get(), inBytes);
}

OSErr ReadAttributes(const std::string& inPath, Companion* outCompanion) {
    auto info = AttributeOf(inPath, kFinderInfoAttribute);
    if (info.size() == kFinderInfoSize) {
        outCompanion->document.Set(kFinderInfoEntry, std::move(info));
    }
    const auto fork = AttributeOf(inPath, kResourceForkAttribute);
    return fork.empty() ? OSErr(noErr) : TakeForkAttribute(fork, outCompanion);
}

OSErr CopyFork(const Companion& inCompanion, int inTarget) {
    UInt32 done = 0;
    while (done < inCompanion.forkLength) {
        const size_t wanted = std::min<size_t>(kCopiedAtOnce, inCompanion.forkLength - done);
        const auto bytes =
            BytesAt(inCompanion.file.Get(), UInt64(inCompanion.forkOffset) + done, wanted);
        if (bytes.empty()) return ioErr;
        if (const OSErr error = WriteAll(inTarget, bytes)) return error;
        done += UInt32(bytes.size());
    }
    return noErr;
}

// A fork must be on the disk before it takes the place of the old one: should the power fail, the
// rename alone may be there. What else is in a companion is not worth the wait.
OSErr PutOnDisk(int inFile) {
    return fdatasync(inFile) == 0 ? OSErr(noErr) : CompanionError(errno);
}

// Belongs to whom the object belongs to, and shows no one more than the object does. A file system
// that keeps no owners or modes shows all its files alike.
OSErr AdoptOwner(int inFile, const struct stat& inObject) {
    const auto result = [](int inResult) {
        const bool isUnknown = errno == EPERM || errno == EOPNOTSUPP;
        return inResult == 0 || isUnknown ? OSErr(noErr) : CompanionError(errno);
    };
    const bool isAnothers = geteuid() == 0 && inObject.st_uid != 0;
    const mode_t mode = (inObject.st_mode & 0666) | S_IRUSR | S_IWUSR;
    const OSErr error = result(fchmod(inFile, mode));
    if (error != noErr || !isAnothers) return error;
    return result(fchown(inFile, inObject.st_uid, inObject.st_gid));
}

OSErr WriteCompanion(int inFile, const ObjectGuard& inGuard, std::span<const UInt8> inHead,
                     const std::function<OSErr(int)>& inWriteFork) {
    OSErr error = AdoptOwner(inFile, inGuard.Facts());
    if (error == noErr) error = WriteAll(inFile, inHead);
    return error ? error : inWriteFork(inFile);
}

OSErr Replace(const MetadataOwner& inOwner, const ObjectGuard& inGuard,
              std::span<const UInt8> inHead, const std::function<OSErr(int)>& inWriteFork) {
    const auto unfinished = UnfinishedCompanion(inOwner, inGuard.Facts());
    unlink(unfinished.c_str());  // of a writer that was killed
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    UniqueFd file(open(unfinished.c_str(), flags, 0600));
    if (!file) return CompanionError(errno);
    OSErr error = WriteCompanion(file.Get(), inGuard, inHead, inWriteFork);
    if (error == noErr && rename(unfinished.c_str(), inOwner.Companion().c_str()) != 0) {
        error = CompanionError(errno);
    }
    if (error == noErr) ReplacedCompanions().Increment();
    if (error != noErr) unlink(unfinished.c_str());
    return error;
}

}  // namespace

OSErr CompanionError(int inErrno) {
    return inErrno == ENOENT ? OSErr(dirNFErr) : OSErrFromErrno(inErrno);
}

bool IsEmptyFile(int inFile) {
    struct stat facts;
    return fstat(inFile, &facts) == 0 && S_ISREG(facts.st_mode) && facts.st_size == 0;
}

SharedCounter& ReplacedCompanions() {
    static SharedCounter& sCounter = *new SharedCounter(VolumesFolder() + "/companions");
    return sCounter;
}

std::string UnfinishedCompanion(const MetadataOwner& inOwner, const struct stat& inObject) {
    char name[64];
    std::snprintf(name, sizeof name, "%s%x-%llx", kUnfinishedPrefix, unsigned(geteuid()),
                  static_cast<unsigned long long>(inObject.st_ino));
    return PathInFolder(ParentOfPath(inOwner.Companion()), name);
}

// A link, a device or a file of another form in the companion's place is damage, too. An empty file
// holds nothing that could be lost: a power failure can leave one.
OSErr ReadCompanion(const MetadataOwner& inOwner, Companion* outCompanion) {
    *outCompanion = Companion();
    const int flags = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    UniqueFd file(open(inOwner.Companion().c_str(), flags));
    const bool isMissing =
        file ? IsEmptyFile(file.Get()) : errno == ENOENT || errno == ENAMETOOLONG;
    if (!file && !isMissing && errno != ELOOP && errno != ENXIO) return OSErrFromErrno(errno);
    auto document = file && !isMissing ? AppleDoubleDocument::Read(file.Get()) : std::nullopt;
    if (!document) {
        outCompanion->state = isMissing ? CompanionState::kNone : CompanionState::kDamaged;
        return ReadAttributes(inOwner.path, outCompanion);
    }
    outCompanion->state = CompanionState::kSound;
    outCompanion->file = std::move(file);
    outCompanion->forkOffset = document->ForkEntry().offset;
    outCompanion->forkLength = document->ForkEntry().length;
    outCompanion->document = std::move(*document);
    return noErr;
}

OSErr ReplaceCompanion(const MetadataOwner& inOwner, const ObjectGuard& inGuard,
                       const Companion& inCompanion) {
    const auto head = inCompanion.document.BytesBeforeFork(inCompanion.forkLength);
    return Replace(inOwner, inGuard, head, [&](int inFile) {
        const OSErr error = CopyFork(inCompanion, inFile);
        const bool isDone = error != noErr || inCompanion.forkLength == 0;
        return isDone ? error : PutOnDisk(inFile);
    });
}

OSErr ReplaceCompanion(const MetadataOwner& inOwner, const ObjectGuard& inGuard,
                       const Companion& inCompanion, std::span<const UInt8> inFork) {
    const auto head = inCompanion.document.BytesBeforeFork(UInt32(inFork.size()));
    return Replace(inOwner, inGuard, head, [&](int inFile) -> OSErr {
        const OSErr error = WriteAll(inFile, inFork);
        return error ? error : PutOnDisk(inFile);
    });
}

}  // namespace carbon
