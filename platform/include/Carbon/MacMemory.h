// Memory Manager: relocatable blocks (handles) and fixed ones (pointers).
//
// A handle points to a master pointer, which points to the block; the master pointer changes when
// the block moves. Master pointers are never handed back to the system, so a handle that was
// disposed of is recognised (memWZErr) until its place is used again, which takes a while.
// Sizes are bytes, 0 to maxSize. Blocks are aligned for any type. Blocks and calls may be used from
// any thread; two threads must not work on the same block at once.
//
// Linux: blocks move only when their size changes and are never purged; locking and purge bits only
// record what HGetState reports, and that a locked block must stay where it is.
//
// Unless a call says otherwise its result code is left for MemError: noErr on success, nilHandleErr
// for a null or empty handle, memWZErr for a handle or pointer that is not live, memBCErr when the
// bytes before a block were overwritten.
#ifndef CARBON_MACMEMORY_H
#define CARBON_MACMEMORY_H

#include <Carbon/MacTypes.h>

enum { maxSize = 0x7FFFFFF0 };

// The byte that HGetState and HSetState carry.
enum {
    kHandleIsResourceBit = 5,
    kHandlePurgeableBit = 6,
    kHandleLockedBit = 7,
    kHandleIsResourceMask = 0x20,
    kHandlePurgeableMask = 0x40,
    kHandleLockedMask = 0x80
};

PLATFORM_DECLARATIONS_BEGIN

// The result of this thread's last Memory Manager call. Reading it sets it to noErr.
OSErr MemError(void);

// The same without resetting it, and a way to set it.
OSErr LMGetMemErr(void);
void LMSetMemErr(SInt16 value);

// A new block, unlocked, unpurgeable and not a resource; its bytes are undefined, or zero with
// ...Clear. Size 0 gives an empty block with a master pointer that is not null. The caller disposes
// of it. Null with memFullErr when there is no room or the size is out of range.
Handle NewHandle(Size byteCount);
Handle NewHandleClear(Size byteCount);

// NewHandle with its result code also in `resultCode`, which may be null.
Handle TempNewHandle(Size logicalSize, OSErr* resultCode);

// A handle without a block: its master pointer is null. ReallocateHandle gives it one.
Handle NewEmptyHandle(void);

// Frees a handle and its block. Null does nothing. A resource is given back with ReleaseResource
// instead.
void DisposeHandle(Handle h);

// The block's size; 0 when there is an error.
Size GetHandleSize(Handle h);

// Changes a block's size, keeping its bytes up to the smaller size; what is added is undefined. The
// block may move. A locked one grows only where it stands, else it keeps its size with memFullErr;
// shrinking always works.
void SetHandleSize(Handle h, Size newSize);

// Gives a handle a new block of undefined bytes, unlocked and unpurgeable, in place of its old one
// if it has one. memPurErr when that is locked, memFullErr when there is no room; then it stays.
void ReallocateHandle(Handle h, Size byteCount);

// Frees the block and keeps the handle, whose master pointer becomes null. memPurErr, and nothing
// done, when the block is locked. An empty handle is left as it is.
void EmptyHandle(Handle h);

// Flags of a block, without nesting. Null does nothing with noErr.
void HLock(Handle h);
void HLockHi(Handle h);
void MoveHHi(Handle h);
void HUnlock(Handle h);
void HPurge(Handle h);
void HNoPurge(Handle h);
void HSetRBit(Handle h);
void HClrRBit(Handle h);

// All three flags as one byte, negative when locked. On an error the byte is the error's low byte.
SInt8 HGetState(Handle h);

// Sets all three flags from such a byte.
void HSetState(Handle h, SInt8 flags);

// Whether these are live: made by a call above, not disposed of yet. Sets no error.
Boolean IsHandleValid(Handle h);
Boolean IsPointerValid(Ptr p);

// Replaces a handle by a copy of it, unlocked, unpurgeable and not a resource; on an error the
// variable keeps what it had. memFullErr, nilHandleErr, memWZErr; left for MemError too, as with
// the next four.
OSErr HandToHand(Handle* theHndl);

// A new handle holding a copy of `size` bytes; the caller disposes of it. On an error `dstHndl` is
// null. Null bytes with a size over 0 are paramErr.
OSErr PtrToHand(const void* srcPtr, Handle* dstHndl, Size size);

// Replaces a block's contents by a copy of `size` bytes, which may lie in the block itself. Errors
// as with SetHandleSize, and the block then keeps its contents.
OSErr PtrToXHand(const void* srcPtr, Handle dstHndl, Size size);

// Appends the contents of the first block to the second; both may be the same.
OSErr HandAndHand(Handle hand1, Handle hand2);

// Appends `size` bytes, which may lie in the block itself.
OSErr PtrAndHand(const void* ptr1, Handle hand2, Size size);

// A fixed block, undefined or zero. The caller disposes of it. Null with memFullErr when there is
// no room or the size is out of range.
Ptr NewPtr(Size byteCount);
Ptr NewPtrClear(Size byteCount);

// Frees a fixed block. Null does nothing.
void DisposePtr(Ptr p);

// The size of a fixed block; 0 when there is an error. Null counts as one that is not live.
Size GetPtrSize(Ptr p);

// Changes the size where the block stands, or fails with memFullErr and changes nothing.
void SetPtrSize(Ptr p, Size newSize);

// Copies bytes; the areas may overlap. A count of 0 or less does nothing. Sets no error.
void BlockMove(const void* srcPtr, void* destPtr, Size byteCount);
void BlockMoveData(const void* srcPtr, void* destPtr, Size byteCount);

// Sets bytes to zero. A count of 0 or less does nothing. Sets no error.
void BlockZero(void* destPtr, Size byteCount);

// What could be allocated now: the machine's available memory, at least 4 MiB, at most maxSize.
// `grow`, which may be null, receives 0: there is no zone to grow.
SInt32 FreeMem(void);
SInt32 MaxBlock(void);
Size MaxMem(Size* grow);
SInt32 TempFreeMem(void);
Size TempMaxMem(Size* grow);

PLATFORM_DECLARATIONS_END

#endif
