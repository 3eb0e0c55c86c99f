// Owns the rules by which paths to one fork live beside each other.
#include "file_manager/forks/fork_opening.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>

#include <cerrno>

#include "file_manager/catalog/located.h"
#include "file_manager/forks/fork_table.h"
#include "file_manager/metadata/object_guard.h"
#include "posix/os_err.h"

namespace carbon {

namespace {

constexpr ForkUses kAsReader = kReads;
constexpr ForkUses kAsWriter = kWrites | kWritesAlone;
constexpr ForkUses kAsOnlyWriter = kReads | kAsWriter;
constexpr ForkUses kAsSharedWriter = kReads | kWrites | kWritesTogether;

ForkUses UsesOfDenyModes(UInt8 inModes) {
    ForkUses uses = 0;
    if (inModes & fsRdAccessPerm) uses |= kReads;
    if (inModes & fsWrAccessPerm) uses |= kWrites | kWritesTogether;
    if (inModes & fsRdDenyPerm) uses |= kDeniesReading;
    if (inModes & fsWrDenyPerm) uses |= kDeniesWriting;
    return uses;
}

// What a path would do, in the order of preference: only the current permission leaves a choice.
std::vector<ForkUses> ChoicesOf(const ForkRequest& inRequest) {
    if (inRequest.hasDenyModes) return {UsesOfDenyModes(inRequest.modes)};
    switch (inRequest.modes) {
        case fsCurPerm:
            return {kAsOnlyWriter, kAsSharedWriter, kAsReader};
        case fsRdPerm:
            return {kAsReader};
        case fsWrPerm:
            return {kAsWriter};
        case fsRdWrPerm:
            return {kAsOnlyWriter};
        case fsRdWrShPerm:
            return {kAsSharedWriter};
        default:
            return {};
    }
}

// Whether what is held and what is asked can be at the same time.
bool IsDenied(ForkUses inAsked, ForkUses inHeld) {
    return ((inAsked & kReads) && (inHeld & kDeniesReading)) ||
           ((inAsked & kWrites) && (inHeld & kDeniesWriting)) ||
           ((inAsked & kDeniesReading) && (inHeld & kReads)) ||
           ((inAsked & kDeniesWriting) && (inHeld & kWrites));
}

bool IsSecondWriter(ForkUses inAsked, ForkUses inHeld) {
    return (inAsked & kWrites) &&
           ((inHeld & kWritesAlone) || ((inAsked & kWritesAlone) && (inHeld & kWrites)));
}

SInt16 OwnWriter(const struct stat& inFacts, Fork inFork) {
    for (const auto& path : OpenPathsTo(inFacts.st_dev, inFacts.st_ino, inFork)) {
        if (path.fork->GetFacts().uses & kWrites) return path.number;
    }
    return 0;
}

OSErr OpeningError(int inErrno) {
    if (inErrno == EROFS) return wrPermErr;
    const bool isForbidden = inErrno == EACCES || inErrno == EPERM || inErrno == ETXTBSY;
    return isForbidden ? OSErr(permErr) : OSErrFromErrno(inErrno);
}

OSErr CheckMayWrite(int inFile) {
    const auto path = "/proc/self/fd/" + std::to_string(inFile);
    const bool mayWrite = faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
    return mayWrite ? OSErr(noErr) : OpeningError(errno);
}

// A resource fork's file is only read and locked, but who may not write it may not write that fork.
OSErr OpenFile(const Object& inObject, Fork inFork, bool inIsForWriting, UniqueFd* outFile) {
    const int access = inIsForWriting && inFork == Fork::kData ? O_RDWR : O_RDONLY;
    const int flags = access | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY;
    *outFile = UniqueFd(open(inObject.path.c_str(), flags));
    if (!*outFile) return OpeningError(errno);
    return inIsForWriting ? CheckMayWrite(outFile->Get()) : OSErr(noErr);
}

OSErr NewStorage(int inFile, Fork inFork, ForkUses inUses,
                 std::unique_ptr<ForkStorage>* outStorage) {
    const bool isShared = inUses & kWritesTogether;
    if (inFork == Fork::kResource) return NewResourceStorage(inFile, isShared, outStorage);
    *outStorage = NewDataStorage(inFile);
    return noErr;
}

class Opening {
  public:
    Opening(const Object& inObject, const ForkRequest& inRequest, bool inIsVolumeLocked)
        : mObject(inObject), mRequest(inRequest), mIsVolumeLocked(inIsVolumeLocked) {}

    OSErr Try(ForkUses inUses, SInt16* outNumber);
    OSErr TakeGuard() { return mGuard.Take(mObject.path); }

  private:
    OSErr CheckLocks(ForkUses inUses);
    OSErr CheckOthers(int inFile, ForkUses inUses, SInt16* outNumber);

    const Object& mObject;
    const ForkRequest& mRequest;
    const bool mIsVolumeLocked;
    ObjectGuard mGuard;
};

OSErr Opening::CheckLocks(ForkUses inUses) {
    if (!(inUses & kWrites)) return noErr;
    if (mIsVolumeLocked) return wrPermErr;
    return IsLocked(mObject) ? OSErr(permErr) : OSErr(noErr);
}

OSErr Opening::CheckOthers(int inFile, ForkUses inUses, SInt16* outNumber) {
    const ForkUses held = ForkUsesOfOthers(inFile, mRequest.fork);
    const bool isDenied = IsDenied(inUses, held);
    if (!isDenied && !IsSecondWriter(inUses, held)) return noErr;
    const SInt16 own = OwnWriter(mGuard.Facts(), mRequest.fork);
    const bool meetsOwn = own != 0 && (inUses & (kWrites | kDeniesWriting));
    if (meetsOwn) *outNumber = own;
    return isDenied && !meetsOwn ? OSErr(permErr) : OSErr(opWrErr);
}

OSErr Opening::Try(ForkUses inUses, SInt16* outNumber) {
    UniqueFd file;
    std::unique_ptr<ForkStorage> storage;
    OSErr error = CheckLocks(inUses);
    if (error == noErr) error = OpenFile(mObject, mRequest.fork, inUses & kWrites, &file);
    if (error == noErr) error = CheckOthers(file.Get(), inUses, outNumber);
    if (error == noErr) error = HoldForkUses(file.Get(), mRequest.fork, inUses);
    if (error == noErr) error = NewStorage(file.Get(), mRequest.fork, inUses, &storage);
    if (error != noErr) return error;
    const OpenFork::Facts facts{mRequest.fork, inUses, mObject.spec, mGuard.Facts().st_dev,
                                mGuard.Facts().st_ino};
    return AddOpenFork(std::make_shared<OpenFork>(facts, std::move(file), std::move(storage)),
                       outNumber);
}

}  // namespace

OSErr OpenForkOf(const Object& inObject, const ForkRequest& inRequest, bool inIsVolumeLocked,
                 SInt16* outNumber) {
    if (!S_ISREG(inObject.status.mode)) return fnfErr;
    Opening opening(inObject, inRequest, inIsVolumeLocked);
    if (const OSErr error = opening.TakeGuard()) return error;
    OSErr error = paramErr;
    for (const ForkUses uses : ChoicesOf(inRequest)) {
        error = opening.Try(uses, outNumber);
        if (error != opWrErr && error != permErr && error != wrPermErr) return error;
    }
    return error;
}

}  // namespace carbon
