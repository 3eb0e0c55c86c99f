// Owns the steps of an exchange, and their order.
#include "file_manager/catalog/exchanged_files.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>

#include <cerrno>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/exchange_journal.h"
#include "file_manager/metadata/object_guard.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

// Linux: file systems that cannot do this at one stroke do not do it at all.
OSErr ExchangeNames(const std::string& inOne, const std::string& inOther) {
    const int result =
        renameat2(AT_FDCWD, inOne.c_str(), AT_FDCWD, inOther.c_str(), RENAME_EXCHANGE);
    if (result == 0) return noErr;
    return errno == EINVAL || errno == ENOSYS ? OSErr(paramErr) : OSErrFromErrno(errno);
}

OSErr GiveAway(const std::string& inFrom, const std::string& inTo) {
    const int result =
        renameat2(AT_FDCWD, inFrom.c_str(), AT_FDCWD, inTo.c_str(), RENAME_NOREPLACE);
    return result == 0 ? OSErr(noErr) : OSErrFromErrno(errno);
}

// The companions go with their forks: no fork is ever in memory only. A side without one gets the
// other's and leaves it none.
OSErr ExchangeCompanions(const std::string& inOne, const std::string& inOther) {
    const auto one = CompanionPath(inOne, false), other = CompanionPath(inOther, false);
    OSErr error = ExchangeNames(one, other);
    if (error == fnfErr) error = GiveAway(one, other);
    if (error == fnfErr) error = GiveAway(other, one);
    return error == fnfErr ? OSErr(noErr) : error;
}

UInt64 InodeOf(const std::string& inPath) {
    struct stat facts;
    return lstat(inPath.c_str(), &facts) == 0 ? facts.st_ino : 0;
}

UInt64 InodeOfCompanion(const ExchangedFile& inFile) {
    return InodeOf(CompanionPath(inFile.path, false));
}

ExchangedFile NoteOf(const ExchangeSide& inSide) {
    const Object& object = inSide.located.object;
    const ObjectIdentity& identity = object.status.identity;
    ExchangedFile file{object.path, identity.device, identity.inode,
                       0,           inSide.created,  inSide.metadata};
    file.companion = InodeOfCompanion(file);
    return file;
}

// What stays with the name: all but the forks and the date of their last change.
OSErr KeepFacts(const ExchangedFile& inFile) {
    return ChangeMetadata(inFile.path, [&](Metadata* ioMetadata) {
        *ioMetadata = inFile.metadata;
        ObjectStatus status;
        const bool isThere = StatusOfObject(inFile.path, &status) == noErr;
        if (!isThere || CreationTimeOf(status, ioMetadata->facts) != inFile.created)
            ioMetadata->facts.created = inFile.created;
    });
}

void KeepNumber(Objects& ioObjects, const std::string& inPath) {
    Object object;
    if (ioObjects.FindByPath(inPath, &object) != noErr) return;
    const Volume* found = ioObjects.AllFolders().FindVolume(object.spec.vRefNum);
    if (!found) return;
    const Volume volume = *found;
    IdTable& table = ioObjects.AllFolders().TableOf(volume);
    auto record =
        table.HasFiles() ? table.FindEntry(object.spec.parID, object.diskName) : std::nullopt;
    if (!record) return;
    record->identity = Folders::KeptIdentity(volume, object.status.identity);
    table.Correct(*record);
}

OSErr KeepWhatStays(Objects& ioObjects, const ExchangedFiles& inFiles) {
    OSErr error = KeepFacts(inFiles.one);
    if (error == noErr) error = KeepFacts(inFiles.other);
    if (error != noErr) return error;
    KeepNumber(ioObjects, inFiles.one.path);
    KeepNumber(ioObjects, inFiles.other.path);
    return noErr;
}

// The first step decides: a process killed before it has changed nothing, and after it the note
// says all that is to follow.
OSErr ExchangeContents(const ExchangeSide& inOne, const ExchangeSide& inOther,
                       ExchangedFiles* outFiles, ExchangeJournal* outJournal) {
    ObjectGuards guards;
    const auto& one = inOne.located.object.path;
    const auto& other = inOther.located.object.path;
    if (const OSErr error = guards.Take(one, other)) return error;
    *outFiles = {NoteOf(inOne), NoteOf(inOther)};
    if (const OSErr error = outJournal->Begin(*outFiles)) return error;
    if (const OSErr error = ExchangeNames(one, other)) return error;
    const OSErr error = ExchangeCompanions(one, other);
    if (error != noErr) ExchangeNames(one, other);  // as it was
    return error;
}

void ExchangeBack(const ExchangedFiles& inFiles) {
    ObjectGuards guards;
    const auto& one = inFiles.one.path;
    const auto& other = inFiles.other.path;
    if (guards.Take(one, other) != noErr || ExchangeNames(one, other) != noErr) return;
    ExchangeCompanions(one, other);
    // What fails now leaves the other's facts, and no fork is lost.
}

bool HasTakenPlaceOf(const ExchangedFile& inOne, const ExchangedFile& inOther) {
    struct stat facts;
    return lstat(inOther.path.c_str(), &facts) == 0 && facts.st_dev == inOne.device &&
           facts.st_ino == inOne.inode;
}

// A companion that has been replaced since is a new one, so it was exchanged before.
bool AreCompanionsInPlace(const ExchangedFiles& inFiles) {
    const UInt64 one = InodeOfCompanion(inFiles.one);
    if (inFiles.one.companion != 0) return one == inFiles.one.companion;
    return one == 0 && inFiles.other.companion != 0;
}

void Finish(Objects& ioObjects, const ExchangedFiles& inFiles) {
    const auto& one = inFiles.one;
    const auto& other = inFiles.other;
    {
        ObjectGuards guards;
        if (guards.Take(one.path, other.path) != noErr) return;
        if (!HasTakenPlaceOf(one, other) || !HasTakenPlaceOf(other, one)) return;
        if (AreCompanionsInPlace(inFiles) && ExchangeCompanions(one.path, other.path) != noErr)
            return;
    }
    KeepWhatStays(ioObjects, inFiles);
}

}  // namespace

OSErr ExchangeFiles(Objects& ioObjects, const ExchangeSide& inOne, const ExchangeSide& inOther) {
    ExchangedFiles files;
    ExchangeJournal journal;
    OSErr error = ExchangeContents(inOne, inOther, &files, &journal);
    if (error != noErr) return error;
    error = KeepWhatStays(ioObjects, files);
    if (error == noErr) return noErr;
    ExchangeBack(files);
    KeepFacts(files.one);
    KeepFacts(files.other);
    return error;
}

void FinishExchanges(Objects& ioObjects) {
    if (!MayExchangesBeLeft()) return;
    FinishLeftExchanges([&](const ExchangedFiles& inFiles) { Finish(ioObjects, inFiles); });
}

}  // namespace carbon
