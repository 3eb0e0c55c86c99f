// Owns the list of locks that are held while the process forks.
#include "posix/across_forks.h"

#include <pthread.h>

#include <vector>

namespace carbon {

namespace {

struct Entry {
    HeldAcrossForks::Lock lock;
    HeldAcrossForks::Calls calls;
};

std::vector<Entry>& Entries() {
    static auto& sEntries = *new std::vector<Entry>;
    return sEntries;
}

void Lock(const Entry& inEntry) {
    inEntry.lock.lock(inEntry.lock.mutex);
}

bool TryLock(const Entry& inEntry) {
    return inEntry.lock.tryLock(inEntry.lock.mutex);
}

void Unlock(const Entry& inEntry) {
    inEntry.lock.unlock(inEntry.lock.mutex);
}

// All locks but the one at `inHeld`, or none of them: then gives the one that another thread has,
// else inHeld itself.
size_t TryOthers(const std::vector<Entry>& inEntries, size_t inHeld) {
    for (size_t i = 0; i < inEntries.size(); ++i) {
        if (i == inHeld || TryLock(inEntries[i])) continue;
        for (size_t taken = 0; taken < i; ++taken)
            if (taken != inHeld) Unlock(inEntries[taken]);
        return i;
    }
    return inHeld;
}

// Waits for one lock at a time and with no other in hand, so that nobody waits for this thread.
void LockAll(const std::vector<Entry>& inEntries) {
    for (size_t awaited = 0;;) {
        Lock(inEntries[awaited]);
        const size_t taken = TryOthers(inEntries, awaited);
        if (taken == awaited) return;
        Unlock(inEntries[awaited]);
        awaited = taken;
    }
}

void BeforeFork() {
    LockAll(Entries());
    for (const Entry& entry : Entries())
        if (entry.calls.before) entry.calls.before();
}

void AfterForkInParent() {
    for (const Entry& entry : Entries()) Unlock(entry);
}

void AfterForkInChild() {
    for (const Entry& entry : Entries())
        if (entry.calls.inChild) entry.calls.inChild();
    for (const Entry& entry : Entries()) Unlock(entry);
}

}  // namespace

HeldAcrossForks::HeldAcrossForks(const Lock& inLock, const Calls& inCalls) {
    if (Entries().empty()) pthread_atfork(BeforeFork, AfterForkInParent, AfterForkInChild);
    Entries().push_back({inLock, inCalls});
}

}  // namespace carbon
