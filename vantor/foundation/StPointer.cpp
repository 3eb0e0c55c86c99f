// The pointer guards: who disposes, and how a block is duplicated.
#include "vantor/foundation/StPointer.h"

#include "vantor/foundation/LException.h"

StPointerBlock::StPointerBlock(Ptr inPtr) : mPtr(inPtr), mOwns(inPtr != nullptr) {}

StPointerBlock::StPointerBlock(Ptr inPtr, bool inOwns)
    : mPtr(inPtr), mOwns(inOwns && inPtr != nullptr) {}

StPointerBlock::StPointerBlock(SInt32 inSize, bool inThrowFail, bool inClearMem)
    : mPtr(inClearMem ? NewPtrClear(inSize) : NewPtr(inSize)), mOwns(true) {
    if (mPtr == nullptr && inThrowFail) ThrowMemoryError();
}

StPointerBlock::StPointerBlock(const StPointerBlock& inOther)
    : mPtr(CopyPointerBlock(inOther.mPtr)), mOwns(mPtr != nullptr) {}

StPointerBlock& StPointerBlock::operator=(const StPointerBlock& inOther) {
    if (this != &inOther) CopyAndAdopt(inOther.mPtr);
    return *this;
}

StPointerBlock::~StPointerBlock() {
    if (mOwns && mPtr != nullptr) DisposePtr(mPtr);
}

Ptr StPointerBlock::CopyPointerBlock(Ptr inPtr) {
    if (inPtr == nullptr) return nullptr;
    const Size size = GetPtrSize(inPtr);
    ThrowIfError(MemError());
    const Ptr copy = NewPtr(size);
    if (copy == nullptr) ThrowMemoryError();
    BlockMoveData(inPtr, copy, size);
    return copy;
}

void StPointerBlock::Adopt(Ptr inPtr) {
    if (inPtr != mPtr) {
        Dispose();
        mPtr = inPtr;
    }
    mOwns = mPtr != nullptr;
}

void StPointerBlock::CopyAndAdopt(Ptr inPtr) {
    Adopt(CopyPointerBlock(inPtr));
}

void StPointerBlock::Dispose() {
    if (mOwns && mPtr != nullptr) DisposePtr(mPtr);
    mPtr = nullptr;
    mOwns = false;
}

StClearPointerBlock::StClearPointerBlock(SInt32 inSize, Boolean inThrowFail)
    : StPointerBlock(NewPtrClear(inSize)) {
    if (mPtr == nullptr && inThrowFail) ThrowMemoryError();
}
