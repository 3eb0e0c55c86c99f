// The handle guards: who disposes, and what tells a resource from a plain block.
#include "vantor/foundation/StHandle.h"

#include "vantor/foundation/LException.h"

namespace {

SInt8 StateOf(Handle inHandle) {
    const SInt8 state = HGetState(inHandle);
    ThrowIfError(MemError());
    return state;
}

Handle Duplicate(Handle inHandle) {
    if (inHandle != nullptr) ThrowIfError(HandToHand(&inHandle));
    return inHandle;
}

}  // namespace

StHandleLocker::StHandleLocker(Handle inHandle) : mHandle(nullptr), mLocked(false) {
    Adopt(inHandle);
}

StHandleLocker::~StHandleLocker() {
    RestoreLockState();
}

void StHandleLocker::Adopt(Handle inHandle) {
    RestoreLockState();
    mHandle = inHandle;
    mLocked = false;
    // The sign bit of the state byte says "locked".
    if (mHandle != nullptr && StateOf(mHandle) >= 0) {
        HLock(mHandle);
        mLocked = true;
    }
}

void StHandleLocker::RestoreLockState() {
    if (mLocked && mHandle != nullptr) HUnlock(mHandle);
}

Handle StHandleLocker::Release() {
    RestoreLockState();
    const Handle handle = mHandle;
    mHandle = nullptr;
    mLocked = false;
    return handle;
}

StHandleState::StHandleState(Handle inHandle) : mHandle(inHandle), mState(StateOf(inHandle)) {}

StHandleState::~StHandleState() {
    HSetState(mHandle, mState);
}

StHandleBlock::StHandleBlock(Handle inHandle) : mHandle(inHandle), mOwns(inHandle != nullptr) {}

StHandleBlock::StHandleBlock(Handle inHandle, bool inOwns)
    : mHandle(inHandle), mOwns(inOwns && inHandle != nullptr) {}

StHandleBlock::StHandleBlock(SInt32 inSize, bool inThrowFail, bool inUseTempMem)
    : mHandle(NewHandle(inSize)), mOwns(true) {
    if (mHandle != nullptr) return;
    OSErr error = MemError();
    if (inUseTempMem) mHandle = TempNewHandle(inSize, &error);
    // Kept: thrown as it is, even when it is 0.
    if (mHandle == nullptr && inThrowFail) LException::Throw(error);
}

StHandleBlock::StHandleBlock(const StHandleBlock& inOther)
    : mHandle(Duplicate(inOther.mHandle)), mOwns(inOther.mHandle != nullptr) {}

StHandleBlock& StHandleBlock::operator=(const StHandleBlock& inOther) {
    if (this != &inOther) CopyAndAdopt(inOther.mHandle);
    return *this;
}

StHandleBlock::~StHandleBlock() {
    Dispose();
}

Handle StHandleBlock::GetCopy() const {
    return Duplicate(mHandle);
}

void StHandleBlock::Adopt(Handle inHandle) {
    if (inHandle != mHandle) {
        Dispose();
        mHandle = inHandle;
    }
    mOwns = mHandle != nullptr;
}

void StHandleBlock::CopyAndAdopt(Handle inHandle) {
    Adopt(Duplicate(inHandle));
}

Handle StHandleBlock::Release() const {
    mOwns = false;
    return mHandle;
}

bool StHandleBlock::IsAResource() const {
    GetResAttrs(mHandle);
    return ResError() != resNotFound;  // Kept: any other error counts as a resource here.
}

void StHandleBlock::Dispose() {
    if (mOwns && mHandle != nullptr) {
        GetResAttrs(mHandle);
        // Kept: any resource error means a plain handle here, unlike in IsAResource.
        if (ResError() == noErr) {
            ReleaseResource(mHandle);
        } else {
            DisposeHandle(mHandle);
        }
    }
    mHandle = nullptr;
    mOwns = false;
}

StClearHandleBlock::StClearHandleBlock(SInt32 inSize, Boolean inThrowFail)
    : StHandleBlock(NewHandleClear(inSize)) {
    if (mHandle == nullptr && inThrowFail) ThrowMemoryError();
}

StTempHandle::StTempHandle(SInt32 inSize, Boolean inThrowFail) : StHandleBlock(nullptr, false) {
    OSErr error = noErr;
    Adopt(TempNewHandle(inSize, &error));
    // Kept: thrown as it is, even when it is 0.
    if (mHandle == nullptr && inThrowFail) LException::Throw(error);
}
