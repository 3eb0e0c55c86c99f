// Guards that tie a relocatable block, or its lock, to a scope.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Locks a handle for a scope. A handle that was locked before stays locked afterwards. A bad handle
// is thrown as the Memory Manager's code.
class VANTOR_EXPORT StHandleLocker {
  public:
    explicit StHandleLocker(Handle inHandle);
    ~StHandleLocker();
    StHandleLocker(const StHandleLocker&) = delete;
    StHandleLocker& operator=(const StHandleLocker&) = delete;

    // Gives the present handle its old lock state back, then looks after another one (or null).
    void Adopt(Handle inHandle);
    void RestoreLockState();
    // Restores the lock state now and forgets the handle, which is returned.
    Handle Release();

  private:
    Handle mHandle;
    UInt32 mLocked;  // by this locker
};

// Puts every state bit of a handle (locked, purgeable, resource) back at the end of a scope.
class VANTOR_EXPORT StHandleState {
  public:
    explicit StHandleState(Handle inHandle);
    ~StHandleState();
    StHandleState(const StHandleState&) = delete;
    StHandleState& operator=(const StHandleState&) = delete;

  private:
    Handle mHandle;
    SInt8 mState;
};

// Owns a handle, or only holds it. Sizes are bytes. A null handle is an ordinary value: test Get()
// after an allocation that was told not to throw. Copies are duplicates of the block.
class VANTOR_EXPORT StHandleBlock {
  public:
    explicit StHandleBlock(Handle inHandle);
    StHandleBlock(Handle inHandle, bool inOwns);
    // Tries temporary memory second when `inUseTempMem` is true.
    explicit StHandleBlock(SInt32 inSize, bool inThrowFail = true, bool inUseTempMem = false);
    StHandleBlock(const StHandleBlock& inOther);
    StHandleBlock& operator=(const StHandleBlock& inOther);
    ~StHandleBlock();

    operator Handle() const { return mHandle; }
    Handle Get() const { return mHandle; }

    // A duplicate that the caller owns; null for a null handle.
    Handle GetCopy() const;
    // Disposes what is held and takes `inHandle` over.
    void Adopt(Handle inHandle);
    // The same with a duplicate of `inHandle`, which stays the caller's.
    void CopyAndAdopt(Handle inHandle);
    // Hands the ownership to the caller. The handle stays readable here.
    Handle Release() const;
    bool IsAResource() const;
    // Releases a resource, disposes any other handle, if owned. Null afterwards.
    void Dispose();

  protected:
    Handle mHandle;
    mutable UInt32 mOwns;
};

// A block of zeros.
class VANTOR_EXPORT StClearHandleBlock : public StHandleBlock {
  public:
    explicit StClearHandleBlock(SInt32 inSize, Boolean inThrowFail = true);
};

// A block in temporary memory.
class VANTOR_EXPORT StTempHandle : public StHandleBlock {
  public:
    explicit StTempHandle(SInt32 inSize, Boolean inThrowFail = true);
};
