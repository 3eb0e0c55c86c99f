// Owns creating, checking and replacing the file of the process table.
#include "process_manager/table_file.h"

#include <Carbon/MacErrors.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "posix/file_lock.h"
#include "posix/os_err.h"
#include "posix/runtime_folder.h"
#include "posix/shared_memory.h"
#include "process_manager/recall.h"

namespace carbon {
namespace {

constexpr char kMark[] = "VTable1";
constexpr std::chrono::milliseconds kLockPatience(5000);

// The table of an earlier system start names processes that are gone.
std::string BootName() {
    const UniqueFd file(open("/proc/sys/kernel/random/boot_id", O_RDONLY | O_CLOEXEC));
    char text[36];
    const ssize_t size = file ? read(file.Get(), text, sizeof text) : 0;
    return std::string(text, size > 0 ? std::size_t(size) : 0);
}

bool HasFullSize(int inFile, struct stat* outFacts) {
    return fstat(inFile, outFacts) == 0 && outFacts->st_size == off_t(sizeof(TableLayout));
}

// A table that is shortened while somebody reads it becomes one without entries, which is replaced.
TableLayout* Map(int inFile, const std::string& inPath) {
    return static_cast<TableLayout*>(
        MapShared(inFile, sizeof(TableLayout), WhenShortened::kGoOnAlone, inPath));
}

bool IsHeaderSound(const TableHeader& inHeader) {
    return std::memcmp(inHeader.mark, kMark, sizeof kMark) == 0 &&
           inHeader.slotCount == kSlotCount && inHeader.slotSize == sizeof(Slot) &&
           inHeader.slotsUsed <= kSlotCount && inHeader.nextNumber >= kFirstNumber;
}

bool IsSlotSound(const Slot& inSlot) {
    return inSlot.mark == kSlotMark && inSlot.state.load() <= SlotState::kRunning &&
           inSlot.name[0] < sizeof inSlot.name;
}

bool IsSound(const TableLayout& inLayout) {
    return IsHeaderSound(inLayout.header) && inLayout.header.boot == BootName() &&
           std::all_of(std::begin(inLayout.slots), std::end(inLayout.slots), IsSlotSound);
}

// Sockets are named after serial numbers: beyond them lie the numbers that nobody has.
UInt32 NumberBeyondSockets(const std::string& inFolder) {
    UInt32 beyond = kFirstNumber;
    for (const UInt32 number : SocketNumbers(inFolder)) beyond = std::max(beyond, number + 1);
    return beyond;
}

void InitializeSlots(TableLayout* outLayout) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    for (Slot& slot : outLayout->slots) {
        pthread_mutex_init(&slot.owner, &attributes);
        slot.mark = kSlotMark;
    }
    pthread_mutexattr_destroy(&attributes);
}

void Initialize(TableLayout* outLayout, UInt32 inFirstNumber) {
    InitializeSlots(outLayout);
    TableHeader& header = outLayout->header;
    header.slotCount = kSlotCount;
    header.slotSize = sizeof(Slot);
    std::snprintf(header.boot, sizeof header.boot, "%s", BootName().c_str());
    header.nextNumber = inFirstNumber;
    header.nextFronted = 1;
    std::memcpy(header.mark, kMark, sizeof kMark);
}

// A program that dies here leaves a file of another name, which the next one overwrites: the caller
// holds the lock.
OSErr Create(const std::string& inFolder, const std::string& inPath, UInt32 inFirstNumber) {
    const std::string draft = inPath + ".new";
    unlink(draft.c_str());
    const UniqueFd file(open(draft.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!file || ftruncate(file.Get(), off_t(sizeof(TableLayout))) != 0)
        return OSErrFromErrno(errno);
    // Space for what is written below is taken now: a full disk is an answer here, a fault there.
    const int reserved = posix_fallocate(file.Get(), 0, off_t(offsetof(TableLayout, longFacts)));
    if (reserved != 0) return OSErrFromErrno(reserved);
    TableLayout* layout = Map(file.Get(), draft);
    if (layout == nullptr) return OSErrFromErrno(errno);
    Initialize(layout, std::max(inFirstNumber, NumberBeyondSockets(inFolder)));
    UnmapShared(layout, sizeof *layout);
    return rename(draft.c_str(), inPath.c_str()) == 0 ? OSErr(noErr) : OSErrFromErrno(errno);
}

// Tells programs that have a damaged table mapped to look for the new one, as far as it still can,
// and gives the number from which the new table may count.
UInt32 Retire(int inFile) {
    TableHeader header;
    if (pread(inFile, static_cast<void*>(&header), sizeof header, 0) != ssize_t(sizeof header))
        return kFirstNumber;
    const UInt32 yes = 1;
    if (pwrite(inFile, &yes, sizeof yes, offsetof(TableHeader, retired)) < 0) return kFirstNumber;
    return IsHeaderSound(header) ? header.nextNumber.load() : kFirstNumber;
}

// The file at the path, if it is a sound table. Otherwise outFile holds what stands there, if
// anything.
TableLayout* OpenSound(const std::string& inPath, UniqueFd* outFile) {
    *outFile = UniqueFd(open(inPath.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
    struct stat facts;
    if (!*outFile || !HasFullSize(outFile->Get(), &facts)) return nullptr;
    TableLayout* layout = Map(outFile->Get(), inPath);
    if (layout != nullptr && !IsSound(*layout)) {
        UnmapShared(layout, sizeof *layout);
        layout = nullptr;
    }
    return layout;
}

OSErr Replace(const std::string& inFolder, const std::string& inPath, const UniqueFd& inDamaged) {
    const UInt32 number = inDamaged ? Retire(inDamaged.Get()) : kFirstNumber;
    if (inDamaged && rename(inPath.c_str(), (inPath + ".damaged").c_str()) != 0)
        return OSErrFromErrno(errno);
    return Create(inFolder, inPath, number);
}

}  // namespace

TableFile::TableFile(const std::string& inPath, UniqueFd inFile, TableLayout* inLayout)
    : mPath(inPath), mFile(std::move(inFile)), mLayout(inLayout) {
    struct stat facts = {};
    HasFullSize(mFile.Get(), &facts);
    mDevice = facts.st_dev;
    mInode = facts.st_ino;
}

OSErr TableFile::Open(TableFile** ioTable) {
    std::string folder;
    const OSErr err = RuntimeFolder(&folder);
    if (err != noErr) return err;
    const std::string path = folder + "/" + kTableName;
    UniqueFd file;
    TableLayout* layout = OpenSound(path, &file);
    bool isNew = false;
    if (layout == nullptr) {
        const FileLock lock(path + ".lock", kLockPatience);
        if (!lock.IsHeld()) return ioErr;
        layout = OpenSound(path, &file);  // another program may have been quicker
        if (layout == nullptr) {
            const OSErr made = Replace(folder, path, file);
            if (made != noErr) return made;
            layout = OpenSound(path, &file);
            isNew = true;
        }
    }
    if (layout == nullptr) return ioErr;
    if (isNew) Recall(folder, *layout);
    auto* const table = new TableFile(path, std::move(file), layout);
    table->mOlder = *ioTable;
    *ioTable = table;
    return noErr;
}

bool TableFile::IsSameFile(const struct stat& inFacts) const {
    return inFacts.st_ino == mInode && inFacts.st_dev == mDevice && inFacts.st_nlink > 0;
}

bool TableFile::IsCurrent() const {
    struct stat facts;
    return HasFullSize(mFile.Get(), &facts) && IsSameFile(facts) &&
           IsHeaderSound(mLayout->header) && mLayout->header.retired == 0;
}

bool TableFile::Reopen() {
    UniqueFd file(open(mPath.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
    struct stat facts;
    if (!file || !HasFullSize(file.Get(), &facts) || !IsSameFile(facts)) return false;
    if (fstat(mFile.Get(), &facts) != 0 || !IsSameFile(facts))
        mFile.Release();  // not ours any more
    mFile = std::move(file);
    return IsCurrent();
}

void TableFile::Detach() {
    struct stat facts;
    if (fstat(mFile.Get(), &facts) != 0 || facts.st_ino != mInode || facts.st_dev != mDevice ||
        facts.st_size >= off_t(sizeof *mLayout))
        return;
    mmap(mLayout, sizeof *mLayout, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED,
         -1, 0);
}

}  // namespace carbon
