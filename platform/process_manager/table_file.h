// The table's bytes: a header, the entries, and for each entry what is too long for it.
#pragma once

#include <Carbon/Files.h>
#include <Carbon/MacTypes.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <string>

#include "posix/UniqueFd.h"

namespace carbon {

constexpr UInt32 kSlotCount = 1024;
constexpr UInt32 kFirstNumber = 16;  // the first serial number's low word
constexpr UInt32 kSlotMark = 'slot';

// Programs built with another layout use another file.
constexpr char kTableName[] = "processes.1";

enum class SlotState : UInt32 {
    kEmpty,
    kLaunching,  // the launcher holds the slot; there may be no process yet
    kStarting,   // the process exists and has not claimed its slot; nobody holds it
    kRunning     // the process holds its slot
};

struct alignas(64) TableHeader {
    char mark[8];
    UInt32 slotCount;
    UInt32 slotSize;
    char boot[40];                // the system start the numbers belong to
    std::atomic<UInt32> retired;  // another file has taken this one's place
    std::atomic<UInt32> nextNumber;
    std::atomic<UInt32> slotsUsed;  // no slot from here on was ever used
    std::atomic<UInt64> nextFronted;
};

// Whoever holds `owner` may change the slot; the kernel lets go for a thread that ends. A reader
// copies the fields and then looks whether `number` is still the same: numbers are never used
// again.
struct alignas(256) Slot {
    pthread_mutex_t owner;
    UInt32 mark;
    std::atomic<UInt32> number;  // the serial number's low word; 0: no process. Written last
    std::atomic<SlotState> state;
    std::atomic<pid_t> pid;
    std::atomic<UInt64> fronted;    // grows each time the process comes to the front; 0: never
    std::atomic<UInt64> startTime;  // tells the pid from a later use of it
    UInt64 programDevice;           // the program file, which tells it from what it may call up in
    UInt64 programInode;            // its own place
    std::atomic<UInt32> ownerLost;  // the process outlived the thread that held the slot
    std::atomic<UInt32> socketReady;
    OSType type;
    OSType signature;
    UInt32 mode;
    UInt32 launcher;
    UInt32 launchTicks;
    Str63 name;
    FSSpec application;
};
static_assert(sizeof(Slot) == 256);

struct LongFacts {
    char executable[4096];
    char bundle[4096];
    char fullName[512];
};

struct TableLayout {
    alignas(4096) TableHeader header;
    alignas(4096) Slot slots[kSlotCount];
    LongFacts longFacts[kSlotCount];
};

// One file, mapped for the life of the program: a thread's list of held locks leads through it.
class TableFile {
  public:
    // Opens the user's table, making it when there is none and setting a damaged one aside.
    // ioTable is the one used so far, or null; other threads may still read it, so it stays.
    // permErr, ioErr and the codes of RuntimeFolder.
    static OSErr Open(TableFile** ioTable);

    TableFile(const TableFile&) = delete;
    TableFile& operator=(const TableFile&) = delete;

    // Whether the file is whole and still the user's table. One system call.
    bool IsCurrent() const;

    // For a host that has closed every descriptor: opens the same file again, if it is in its
    // place.
    bool Reopen();

    // Puts memory of the program's own in place of a file that has lost its end: what still leads
    // there must not fault.
    void Detach();

    TableLayout* operator->() const { return mLayout; }

  private:
    TableFile(const std::string& inPath, UniqueFd inFile, TableLayout* inLayout);
    bool IsSameFile(const struct stat& inFacts) const;

    std::string mPath;
    UniqueFd mFile;
    dev_t mDevice;
    ino_t mInode;
    TableLayout* mLayout;
    const TableFile* mOlder = nullptr;
};

}  // namespace carbon
