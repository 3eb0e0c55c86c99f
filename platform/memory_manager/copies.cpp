// Owns making handles from bytes and from each other.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>

#include <cstring>

#include "memory_manager/mem_error.h"

namespace carbon {
namespace {

OSErr CheckSource(const void* inBytes, Size inSize) {
    if (inSize < 0) return memFullErr;
    return ErrorUnless(inBytes || inSize == 0, paramErr);
}

// The size of the block, or the error in MemError when there is none.
OSErr SizeOf(Handle inHandle, Size* outSize) {
    *outSize = GetHandleSize(inHandle);
    return gMemError;
}

// Where in the block the bytes start; -1 when they lie elsewhere.
Size OffsetIn(Handle inHandle, Size inBlockSize, const void* inBytes) {
    const auto distance =
        reinterpret_cast<uintptr_t>(inBytes) - reinterpret_cast<uintptr_t>(*inHandle);
    return distance < size_t(inBlockSize) ? Size(distance) : -1;
}

// The size of the block, and the offset of the bytes in it; bytes may not run over its end.
OSErr Locate(const void* inBytes, Size inSize, Handle inHandle, Size* outSize, Size* outOffset) {
    if (const OSErr err = CheckSource(inBytes, inSize)) return err;
    if (const OSErr err = SizeOf(inHandle, outSize)) return err;
    *outOffset = OffsetIn(inHandle, *outSize, inBytes);
    return ErrorUnless(*outOffset < 0 || inSize <= *outSize - *outOffset, paramErr);
}

OSErr Make(const void* inBytes, Size inSize, Handle* outHandle) {
    *outHandle = nullptr;
    if (const OSErr err = CheckSource(inBytes, inSize)) return err;
    *outHandle = NewHandle(inSize);
    if (!*outHandle) return gMemError;
    BlockMoveData(inBytes, **outHandle, inSize);
    return noErr;
}

OSErr Fill(const void* inBytes, Handle inHandle, Size inSize) {
    Size oldSize, offset;
    if (const OSErr err = Locate(inBytes, inSize, inHandle, &oldSize, &offset)) return err;
    if (offset >= 0) BlockMoveData(inBytes, *inHandle, inSize);  // before shrinking takes it away
    SetHandleSize(inHandle, inSize);
    if (gMemError == noErr && offset < 0) BlockMoveData(inBytes, *inHandle, inSize);
    return gMemError;
}

OSErr Append(const void* inBytes, Handle inHandle, Size inSize) {
    Size oldSize, offset;
    if (const OSErr err = Locate(inBytes, inSize, inHandle, &oldSize, &offset)) return err;
    if (inSize > maxSize - oldSize) return memFullErr;
    SetHandleSize(inHandle, oldSize + inSize);
    if (gMemError != noErr) return gMemError;
    BlockMoveData(offset < 0 ? inBytes : *inHandle + offset, *inHandle + oldSize, inSize);
    return noErr;
}

OSErr AppendBlock(Handle inFrom, Handle inTo) {
    Size size;
    if (const OSErr err = SizeOf(inFrom, &size)) return err;
    return Append(*inFrom, inTo, size);
}

OSErr Copy(Handle* ioHandle) {
    Size size;
    Handle copy;
    if (!ioHandle) return nilHandleErr;
    if (const OSErr err = SizeOf(*ioHandle, &size)) return err;
    if (const OSErr err = Make(**ioHandle, size, &copy)) return err;
    *ioHandle = copy;
    return noErr;
}

}  // namespace
}  // namespace carbon

using namespace carbon;

OSErr HandToHand(Handle* theHndl) {
    return SetMemError(Copy(theHndl));
}

OSErr PtrToHand(const void* srcPtr, Handle* dstHndl, Size size) {
    return SetMemError(dstHndl ? Make(srcPtr, size, dstHndl) : OSErr(paramErr));
}

OSErr PtrToXHand(const void* srcPtr, Handle dstHndl, Size size) {
    return SetMemError(Fill(srcPtr, dstHndl, size));
}

OSErr HandAndHand(Handle hand1, Handle hand2) {
    return SetMemError(AppendBlock(hand1, hand2));
}

OSErr PtrAndHand(const void* ptr1, Handle hand2, Size size) {
    return SetMemError(Append(ptr1, hand2, size));
}

void BlockMove(const void* srcPtr, void* destPtr, Size byteCount) {
    if (byteCount > 0) std::memmove(destPtr, srcPtr, size_t(byteCount));
}

void BlockMoveData(const void* srcPtr, void* destPtr, Size byteCount) {
    BlockMove(srcPtr, destPtr, byteCount);
}

void BlockZero(void* destPtr, Size byteCount) {
    if (byteCount > 0) std::memset(destPtr, 0, size_t(byteCount));
}
