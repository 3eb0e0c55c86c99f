// Owns the mapping of shared files and the answer to SIGBUS.
#include "posix/shared_memory.h"

#include <Carbon/MacTypes.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>

namespace carbon {
namespace {

constexpr size_t kPage = 4096;  // the smallest there is: more than a file's last byte may fault

// Somebody who shortens a file again and again, or a disk without room for its zeros, gets no more.
constexpr int kMostRescues = 64;

// Never freed, since the handler may stand on it, but used again.
struct Mapping {
    std::atomic<bool> isTaken = true;
    std::atomic<std::uintptr_t> begin = 0;  // written last; 0: nothing is mapped
    size_t size = 0;
    WhenShortened whenShortened{};
    std::string path;
    dev_t device = 0;
    ino_t inode = 0;
    std::atomic<int> rescues = 0;
    Mapping* next = nullptr;
};

std::atomic<Mapping*> gMappings = nullptr;
std::atomic<bool> gIsInstalled = false;
struct sigaction gFormer;

Mapping* FindFree() {
    for (Mapping* each = gMappings; each; each = each->next)
        if (!each->isTaken.exchange(true)) return each;
    return nullptr;
}

Mapping& NewMapping() {
    if (Mapping* free = FindFree()) return *free;
    auto* mapping = new Mapping;
    mapping->next = gMappings;
    while (!gMappings.compare_exchange_weak(mapping->next, mapping)) {
    }
    return *mapping;
}

Mapping* FindAround(std::uintptr_t inAddress) {
    for (Mapping* each = gMappings; each; each = each->next) {
        const std::uintptr_t begin = each->begin;
        const size_t whole = (each->size + kPage - 1) / kPage * kPage;
        if (begin != 0 && inAddress >= begin && inAddress - begin < whole) return each;
    }
    return nullptr;
}

// From here on only what a signal handler may call. True also when somebody else was quicker.
bool Lengthen(const Mapping& inMapping) {
    const int file = open(inMapping.path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC);
    struct stat facts;
    const bool isSame = file >= 0 && fstat(file, &facts) == 0 && facts.st_ino == inMapping.inode &&
                        facts.st_dev == inMapping.device;
    const auto size = static_cast<off_t>(inMapping.size);
    const bool isLong = isSame && (facts.st_size >= size || ftruncate(file, size) == 0);
    if (file >= 0) close(file);
    return isLong;
}

bool GoOnAlone(const Mapping& inMapping) {
    return mmap(reinterpret_cast<void*>(inMapping.begin.load()), inMapping.size,
                PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1,
                0) != MAP_FAILED;
}

bool Rescue(const void* inAddress) {
    Mapping* mapping = FindAround(reinterpret_cast<std::uintptr_t>(inAddress));
    if (!mapping) return false;
    const bool mayLengthen = mapping->whenShortened == WhenShortened::kLengthen &&
                             mapping->rescues.fetch_add(1) < kMostRescues;
    return (mayLengthen && Lengthen(*mapping)) || GoOnAlone(*mapping);
}

// To whoever had the signal before; the default of the system comes when the fault is repeated.
void HandOn(int inSignal, siginfo_t* inInfo, void* inContext) {
    if ((gFormer.sa_flags & SA_SIGINFO) != 0)
        return gFormer.sa_sigaction(inSignal, inInfo, inContext);
    const bool wasSent = inInfo->si_code <= 0;  // by a program, not by a fault
    if (gFormer.sa_handler == SIG_IGN && wasSent) return;
    if (gFormer.sa_handler != SIG_DFL && gFormer.sa_handler != SIG_IGN)
        return gFormer.sa_handler(inSignal);
    signal(inSignal, SIG_DFL);
    if (wasSent) raise(inSignal);
}

void OnBusError(int inSignal, siginfo_t* inInfo, void* inContext) {
    const int error = errno;
    const bool isRescued = inInfo->si_code == BUS_ADRERR && Rescue(inInfo->si_addr);
    errno = error;
    if (!isRescued) HandOn(inSignal, inInfo, inContext);
}

void InstallHandler() {
    if (gIsInstalled.exchange(true)) return;
    sigaction(SIGBUS, nullptr, &gFormer);
    struct sigaction action = {};
    action.sa_sigaction = OnBusError;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigaction(SIGBUS, &action, nullptr);
}

void Remember(void* inMemory, size_t inSize, WhenShortened inWhenShortened,
              const std::string& inPath, const struct stat& inFacts) {
    Mapping& mapping = NewMapping();
    mapping.size = inSize;
    mapping.whenShortened = inWhenShortened;
    mapping.path = inPath;
    mapping.device = inFacts.st_dev;
    mapping.inode = inFacts.st_ino;
    mapping.rescues = 0;
    mapping.begin = reinterpret_cast<std::uintptr_t>(inMemory);
}

}  // namespace

void* MapShared(int inFile, size_t inSize, WhenShortened inWhenShortened,
                const std::string& inPath) {
    struct stat facts;
    if (fstat(inFile, &facts) != 0) return nullptr;
    void* memory = mmap(nullptr, inSize, PROT_READ | PROT_WRITE, MAP_SHARED, inFile, 0);
    if (memory == MAP_FAILED) return nullptr;
    InstallHandler();
    Remember(memory, inSize, inWhenShortened, inPath, facts);
    return memory;
}

void UnmapShared(void* inMemory, size_t inSize) {
    Mapping* mapping = FindAround(reinterpret_cast<std::uintptr_t>(inMemory));
    if (mapping) mapping->begin = 0;
    munmap(inMemory, inSize);
    if (mapping) mapping->isTaken = false;
}

}  // namespace carbon
