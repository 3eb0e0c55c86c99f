// One path to a fork: its mark, its permissions and its place among the others.
#pragma once

#include <Carbon/Files.h>
#include <sys/stat.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

#include "file_manager/forks/fork_storage.h"
#include "posix/UniqueFd.h"
#include "posix/fork_count.h"

namespace carbon {

struct ByteRange {
    SInt64 start;
    SInt64 length;
    bool operator==(const ByteRange&) const = default;
};

class OpenFork {
  public:
    struct Facts {
        Fork fork = Fork::kData;
        ForkUses uses = 0;
        FSSpec spec{};  // when it was opened
        dev_t device = 0;
        ino_t inode = 0;
    };
    OpenFork(const Facts& inFacts, UniqueFd inFile, std::unique_ptr<ForkStorage> inStorage);

    const Facts& GetFacts() const { return mFacts; }
    bool IsSameFork(dev_t inDevice, ino_t inInode, Fork inFork) const;
    int File() const { return mFile.Get(); }
    bool IsChanged() const { return mIsChanged; }

    // Moves the mark as SetFPos tells: posErr, eofErr, paramErr.
    OSErr SetMark(SInt16 inMode, SInt64 inOffset);
    SInt64 Mark();
    void PullMarkBack(SInt64 inLength);

    // From where `inMode` and `inOffset` put the mark, which moves behind what was moved. The bits
    // above the position in `inMode` hold for reading.
    OSErr Read(SInt16 inMode, SInt64 inOffset, void* outBytes, SInt32 inCount, SInt32* outDone);
    OSErr Write(SInt16 inMode, SInt64 inOffset, const void* inBytes, SInt32 inCount,
                SInt32* outDone);

    OSErr GetLength(SInt64* outLength);
    OSErr SetLength(SInt64 inLength);
    OSErr Reserve(SInt64 inCount);
    OSErr GetSpace(SInt64* outBytes);
    OSErr Flush();
    OSErr Close();

    OSErr LockRange(SInt16 inMode, SInt64 inOffset, SInt64 inCount);
    OSErr UnlockRange(SInt16 inMode, SInt64 inOffset, SInt64 inCount);
    bool HasRangeLocks();

  private:
    OSErr FindPlace(SInt16 inMode, SInt64 inOffset, SInt64* outPlace);
    OSErr ReadAll(SInt64 inPlace, UInt8* outBytes, size_t inCount, size_t* outDone);
    OSErr WriteAll(SInt64 inPlace, const UInt8* inBytes, size_t inCount, size_t* outDone);
    OSErr ReadLine(UInt8 inEnd, UInt8* outBytes, size_t inCount, size_t* outDone);
    OSErr Compare(const UInt8* inBytes, size_t inCount, size_t* outDone);
    OSErr CheckRange(SInt64 inPlace, SInt64 inCount);

    const Facts mFacts;
    std::mutex mMutex;
    std::unique_ptr<ForkStorage> mStorage;
    UniqueFd mFile;  // holds the locks that tell others about this path
    SInt64 mMark = 0;
    std::vector<ByteRange> mRanges;
    UInt64 mRangesEdition = 0;
    bool mHasOthersRanges = false;
    std::atomic<bool> mIsChanged = false;
    const unsigned mForks = ForkCount();  // the locks are this process's, not its children's
};

}  // namespace carbon
