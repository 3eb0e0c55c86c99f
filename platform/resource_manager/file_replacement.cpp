// Owns putting a new file in the place of an old one.
#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <string_view>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/metadata/companion_file.h"
#include "posix/UniqueFd.h"
#include "posix/os_err.h"
#include "resource_manager/carrier.h"

namespace carbon {

namespace {

constexpr const char* kAccessList = "system.posix_acl_access";

OSErr Result(int inResult) {
    return inResult == 0 ? OSErr(noErr) : OSErrFromErrno(errno);
}

bool WriteAll(int inFile, const std::vector<UInt8>& inBytes) {
    size_t done = 0;
    while (done < inBytes.size()) {
        const auto count = write(inFile, inBytes.data() + done, inBytes.size() - done);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        done += size_t(count);
    }
    return true;
}

// Those of other kinds are the system's own, and it may refuse them.
bool IsOwners(std::string_view inAttribute) {
    return inAttribute.starts_with("user.") || inAttribute == kAccessList;
}

OSErr CopyAttribute(int inFrom, int inTo, const char* inName) {
    const auto size = fgetxattr(inFrom, inName, nullptr, 0);
    std::vector<char> value(size > 0 ? size_t(size) : 1);
    const auto length = size < 0 ? size : fgetxattr(inFrom, inName, value.data(), value.size());
    const bool isDone =
        length >= 0 && fsetxattr(inTo, inName, value.data(), size_t(length), 0) == 0;
    return isDone || !IsOwners(inName) ? OSErr(noErr) : OSErrFromErrno(errno);
}

// The new file may have got an access list from its folder.
OSErr CopyAttributes(int inFrom, int inTo) {
    fremovexattr(inTo, kAccessList);
    const auto room = flistxattr(inFrom, nullptr, 0);
    if (room <= 0) return noErr;  // or a file system without any
    std::vector<char> names(static_cast<size_t>(room));
    const auto length = flistxattr(inFrom, names.data(), names.size());
    if (length < 0) return OSErrFromErrno(errno);
    for (const char* name = names.data(); name < names.data() + length;
         name += std::char_traits<char>::length(name) + 1) {
        if (const OSErr error = CopyAttribute(inFrom, inTo, name)) return error;
    }
    return noErr;
}

// Only the system's administrator may give a file to another user; a group that is not the user's
// own stays.
void KeepOwner(int inFile, const struct stat& inOld) {
    if (fchown(inFile, inOld.st_uid, inOld.st_gid) == 0) return;
    static_cast<void>(!fchown(inFile, uid_t(-1), inOld.st_gid));
}

OSErr Fill(const std::string& inPath, int inNew, const std::vector<UInt8>& inBytes) {
    const UniqueFd old(open(inPath.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    struct stat status;
    if (!old || fstat(old.Get(), &status) != 0) return OSErrFromErrno(errno);
    KeepOwner(inNew, status);
    if (const OSErr error = CopyAttributes(old.Get(), inNew)) return error;
    if (fchmod(inNew, status.st_mode & 07777) != 0 || !WriteAll(inNew, inBytes) ||
        fdatasync(inNew) != 0)
        return OSErrFromErrno(errno);
    return noErr;
}

struct Facts {
    ObjectIdentity identity;
    SInt64 created = 0;
};

OSErr FactsOf(const std::string& inPath, Facts* outFacts) {
    ObjectStatus status;
    Metadata metadata;
    OSErr error = StatusOfObject(inPath, &status);
    if (error == noErr) error = ReadMetadata(inPath, &metadata);
    *outFacts = {status.identity, CreationTimeOf(status, metadata.facts)};
    return error;
}

// In the companion: the new file was born now. Where there cannot be a companion, or there is a
// damaged one, the date is lost.
OSErr KeepCreation(const std::string& inPath, SInt64 inCreated) {
    const OSErr error = ChangeMetadata(
        inPath, [&](Metadata* ioMetadata) { ioMetadata->facts.created = inCreated; });
    return error == bdNamErr || error == ioErr ? OSErr(noErr) : error;
}

// Under a name that tells whose it is: should this process be killed, the next change of the file
// or the end of its folder clears it away.
OSErr Replace(const std::string& inPath, const std::vector<UInt8>& inBytes) {
    ObjectGuard guard;
    if (const OSErr error = guard.Take(inPath)) return error;
    const auto name = UnfinishedCompanion(inPath, guard.Facts());
    unlink(name.c_str());
    const int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    const UniqueFd file(open(name.c_str(), flags, 0600));
    if (!file) return OSErrFromErrno(errno);
    OSErr error = Fill(inPath, file.Get(), inBytes);
    if (error == noErr) error = Result(rename(name.c_str(), inPath.c_str()));
    if (error != noErr) unlink(name.c_str());
    return error;
}

}  // namespace

// The date is written first, while it is true anyway, unless the file is of this second.
OSErr ReplaceFile(const std::string& inPath, const std::vector<UInt8>& inBytes) {
    Facts before, after;
    OSErr error = FactsOf(inPath, &before);
    const bool isOld = before.created != time(nullptr);
    if (error == noErr && isOld) error = KeepCreation(inPath, before.created);
    if (error == noErr) error = Replace(inPath, inBytes);
    if (error == noErr) error = FactsOf(inPath, &after);
    if (error != noErr) return error;
    Catalog()->NoteSuccessor(before.identity, after.identity);
    return after.created == before.created ? OSErr(noErr) : KeepCreation(inPath, before.created);
}

}  // namespace carbon
