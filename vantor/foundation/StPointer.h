// Guards that tie a block that does not move to a scope.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Owns a pointer of the Memory Manager, or only holds it. Sizes are bytes. A null pointer is an
// ordinary value: test Get() after an allocation that was told not to throw. Copies are duplicates
// of the block.
class VANTOR_EXPORT StPointerBlock {
  public:
    explicit StPointerBlock(Ptr inPtr);
    StPointerBlock(Ptr inPtr, bool inOwns);
    explicit StPointerBlock(SInt32 inSize, bool inThrowFail = true, bool inClearMem = false);
    StPointerBlock(const StPointerBlock& inOther);
    StPointerBlock& operator=(const StPointerBlock& inOther);
    ~StPointerBlock();

    operator char*() const { return mPtr; }
    Ptr Get() const { return mPtr; }

    // A duplicate that the caller owns; null for null. Failures are thrown.
    static Ptr CopyPointerBlock(Ptr inPtr);
    // Disposes what is held and takes `inPtr` over.
    void Adopt(Ptr inPtr);
    // The same with a duplicate of `inPtr`, which stays the caller's.
    void CopyAndAdopt(Ptr inPtr);
    // Disposes the block if owned. Null afterwards.
    void Dispose();

  protected:
    Ptr mPtr;
    UInt32 mOwns;
};

// A block of zeros.
class VANTOR_EXPORT StClearPointerBlock : public StPointerBlock {
  public:
    explicit StClearPointerBlock(SInt32 inSize, Boolean inThrowFail = true);
};
