// The bytes of one open fork, wherever they lie. No call here knows of marks or permissions.
#pragma once

#include <memory>
#include <string>

#include "file_manager/forks/fork_locks.h"
#include "posix/UniqueFd.h"

namespace carbon {

class ForkStorage {
  public:
    virtual ~ForkStorage() = default;

    // Moves up to `inCount` bytes; fewer where the fork ends, or the kernel stops before its end.
    // One call of the kernel, as long as nobody changed what the fork lies in.
    virtual OSErr Read(SInt64 inOffset, void* outBytes, size_t inCount, size_t* outDone) = 0;
    // Grows the fork where need be, a gap before `inOffset` with zeros.
    virtual OSErr Write(SInt64 inOffset, const void* inBytes, size_t inCount, size_t* outDone) = 0;

    virtual OSErr GetLength(SInt64* outLength) = 0;
    // What is added is zero and has its place on the disk. After an error the length is the old
    // one.
    virtual OSErr SetLength(SInt64 inLength) = 0;
    // Takes room for so many bytes behind the end.
    virtual OSErr Reserve(SInt64 inCount) = 0;
    virtual OSErr GetSpace(SInt64* outBytes) = 0;
    virtual OSErr Flush() = 0;
    // Makes the next reading of these bytes come from the disk, as far as the kernel lets it.
    virtual OSErr ForgetCached(SInt64 inOffset, SInt64 inCount) = 0;
    // Once, at the end: the last moment at which an error can be told.
    virtual OSErr Close() = 0;
};

// `inFile` is the file itself; the storage keeps it no longer than its caller does.
std::unique_ptr<ForkStorage> NewDataStorage(int inFile);
// `inIsShared` where others may write beside this path. ioErr when the companion is damaged.
OSErr NewResourceStorage(int inFile, bool inIsShared, std::unique_ptr<ForkStorage>* outStorage);

// Where an open file lies now, whatever it was called when it was opened. Empty when it is deleted.
std::string PathOfOpenFile(int inFile);

// What pread and pwrite answered, as a code and a count.
OSErr TakeCount(ssize_t inCount, size_t* outDone);

// Zeros with their place on the disk, from `inFrom` to `inTo`, which becomes the file's end.
OSErr GrowFile(int inFile, SInt64 inFrom, SInt64 inTo);

}  // namespace carbon
