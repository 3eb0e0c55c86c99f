// Locks that a fork waits for, so that a child finds each of them free and what it guards whole,
// whatever the other threads of its parent were doing.
#pragma once

namespace carbon {

// Stands beside a lock that lives as long as the program, in the same file. The thread that forks
// holds all such locks meanwhile; in what order others take them does not matter, but whoever holds
// one must not fork. Not for a lock that tells readers from writers: it knows its writer by a
// number that the child's thread does not have, and cannot be given back there.
class HeldAcrossForks {
  public:
    // Called by the thread that forks, with all locks held; they take none of them.
    struct Calls {
        void (*before)() = nullptr;
        void (*inChild)() = nullptr;
    };

    template <class Mutex>
    explicit HeldAcrossForks(Mutex& inLock, const Calls& inCalls = {nullptr, nullptr})
        : HeldAcrossForks({&inLock, [](void* inMutex) { static_cast<Mutex*>(inMutex)->lock(); },
                           [](void* inMutex) { return static_cast<Mutex*>(inMutex)->try_lock(); },
                           [](void* inMutex) { static_cast<Mutex*>(inMutex)->unlock(); }},
                          inCalls) {}

    struct Lock {
        void* mutex;
        void (*lock)(void*);
        bool (*tryLock)(void*);
        void (*unlock)(void*);
    };

  private:
    HeldAcrossForks(const Lock& inLock, const Calls& inCalls);
};

}  // namespace carbon
