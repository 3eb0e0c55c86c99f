// Owns the exchange of two files' contents.
#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <stdio.h>

#include <cerrno>

#include "file_manager/catalog_info.h"
#include "file_manager/finder_info.h"
#include "file_manager/located.h"
#include "file_manager/object_guard.h"
#include "file_manager/parameter_block.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

// One of the two, as it was before.
struct Side {
    Located located;
    SInt64 created = 0;
    Metadata metadata;
};

OSErr TakeSide(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
               ConstStr255Param inName, Side* outSide) {
    const OSErr error = Locate(ioObjects, inVolume, inDirectory, inName, &outSide->located);
    if (error != noErr) return error;
    const Object& object = outSide->located.object;
    if (object.status.IsFolder()) return notAFileErr;
    if (const OSErr unread = ReadMetadata(object, &outSide->metadata)) return unread;
    outSide->created = CreationTimeOf(object.status, outSide->metadata.facts);
    return outSide->metadata.companion == CompanionState::kDamaged ? OSErr(ioErr) : OSErr(noErr);
}

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

OSErr ExchangeContents(const std::string& inOne, const std::string& inOther) {
    ObjectGuards guards;
    if (const OSErr error = guards.Take(inOne, inOther)) return error;
    if (const OSErr error = ExchangeNames(inOne, inOther)) return error;
    const OSErr error = ExchangeCompanions(inOne, inOther);
    if (error != noErr) ExchangeNames(inOne, inOther);  // as it was
    return error;
}

// What stays with the name: all but the forks and the date of their last change.
OSErr KeepFacts(const Side& inSide) {
    const std::string& path = inSide.located.object.path;
    return ChangeMetadata(path, [&](Metadata* ioMetadata) {
        *ioMetadata = inSide.metadata;
        ObjectStatus status;
        const bool isThere = StatusOfObject(path, &status) == noErr;
        if (!isThere || CreationTimeOf(status, ioMetadata->facts) != inSide.created)
            ioMetadata->facts.created = inSide.created;
    });
}

void KeepNumber(Objects& ioObjects, const Located& inLocated) {
    const Object& object = inLocated.object;
    IdTable& table = ioObjects.AllFolders().TableOf(inLocated.volume);
    auto record =
        table.HasFiles() ? table.FindEntry(object.spec.parID, object.diskName) : std::nullopt;
    ObjectStatus status;
    if (!record || StatusOfObject(object.path, &status) != noErr) return;
    record->identity = Folders::KeptIdentity(inLocated.volume, status.identity);
    table.Correct(*record);
}

OSErr ExchangeSides(Objects& ioObjects, const Side& inOne, const Side& inOther) {
    const auto& one = inOne.located.object.path;
    const auto& other = inOther.located.object.path;
    if (const OSErr error = ExchangeContents(one, other)) return error;
    OSErr error = KeepFacts(inOne);
    if (error == noErr) error = KeepFacts(inOther);
    if (error == noErr) {
        KeepNumber(ioObjects, inOne.located);
        KeepNumber(ioObjects, inOther.located);
        return noErr;
    }
    // Back as it was: what fails now leaves the other's facts, and no fork is lost.
    ExchangeContents(one, other);
    KeepFacts(inOne);
    KeepFacts(inOther);
    return error;
}

OSErr CheckSides(const Side& inOne, const Side& inOther) {
    const Located &one = inOne.located, &other = inOther.located;
    if (one.volume.number != other.volume.number) return diffVolErr;
    if (Lacks(one.volume, kPlatformMountNoExchange)) return paramErr;
    if (one.object.status.identity.IsSameAs(other.object.status.identity)) return sameFileErr;
    const OSErr error = CheckChangeable(one);
    return error == noErr ? CheckChangeable(other) : error;
}

OSErr Exchange(Objects& ioObjects, const Side& inOne, const Side& inOther) {
    const OSErr error = CheckSides(inOne, inOther);
    return error == noErr ? ExchangeSides(ioObjects, inOne, inOther) : error;
}

OSErr ExchangeByBlock(const FIDParam& inRecord) {
    const Catalog catalog;
    Side one, other;
    OSErr error =
        TakeSide(*catalog, inRecord.ioVRefNum, inRecord.ioSrcDirID, inRecord.ioNamePtr, &one);
    if (error == noErr) {
        error = TakeSide(*catalog, one.located.volume.number, inRecord.ioDestDirID,
                         inRecord.ioDestNamePtr, &other);
    }
    return error == noErr ? Exchange(*catalog, one, other) : error;
}

OSErr ExchangeSpecs(const FSSpec& inOne, const FSSpec& inOther) {
    const Catalog catalog;
    Side one, other;
    OSErr error = TakeSide(*catalog, inOne.vRefNum, inOne.parID, inOne.name, &one);
    if (error == noErr)
        error = TakeSide(*catalog, inOther.vRefNum, inOther.parID, inOther.name, &other);
    return error == noErr ? Exchange(*catalog, one, other) : error;
}

}  // namespace

}  // namespace carbon

OSErr FSpExchangeFiles(const FSSpec* source, const FSSpec* dest) {
    return source && dest ? carbon::ExchangeSpecs(*source, *dest) : OSErr(paramErr);
}

OSErr PBExchangeFilesSync(HParmBlkPtr paramBlock) {
    if (!paramBlock) return paramErr;
    return carbon::Perform(&paramBlock->fidParam,
                           [](FIDParam& inRecord) { return carbon::ExchangeByBlock(inRecord); });
}
