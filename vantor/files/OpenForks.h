// Opening a fork so that others may or may not use it too; open forks. Usable from C.
//
// Objects as in Catalog.h; results are the File Manager's.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// Opens the data fork, or the resource fork, with deny modes: fsRdAccessPerm and fsWrAccessPerm for
// what is wanted, fsRdDenyPerm and fsWrDenyPerm for what others may not. A volume that knows none
// is opened with the nearest permission: writing alone, or reading and writing, without denying
// anything, is shared.
//   outRefNum  written also when the opening failed, with what the File Manager left there
// Before writing on such a volume its locks are looked at: wPrErr, vLckdErr.
VANTOR_EXPORT OSErr HOpenAware(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                               SInt16 inDenyModes, SInt16* outRefNum);
VANTOR_EXPORT OSErr FSpOpenAware(const FSSpec* inSpec, SInt16 inDenyModes, SInt16* outRefNum);
VANTOR_EXPORT OSErr HOpenRFAware(FSVolumeRefNum inVRefNum, SInt32 inDirID, ConstStr255Param inName,
                                 SInt16 inDenyModes, SInt16* outRefNum);
VANTOR_EXPORT OSErr FSpOpenRFAware(const FSSpec* inSpec, SInt16 inDenyModes, SInt16* outRefNum);

// Reads or writes at the mark and asks not to keep the bytes in memory.
//   ioCount  bytes wanted, then bytes moved, also after an error
VANTOR_EXPORT OSErr FSReadNoCache(SInt16 inRefNum, SInt32* ioCount, void* outBuffer);
VANTOR_EXPORT OSErr FSWriteNoCache(SInt16 inRefNum, SInt32* ioCount, const void* inBuffer);

// Writes what is still in memory to the disk.
VANTOR_EXPORT OSErr FlushFile(SInt16 inRefNum);

// Keeps others from `inLength` bytes (-1: all there will ever be) from `inStart` on, and lets them
// again.
VANTOR_EXPORT OSErr LockRange(SInt16 inRefNum, SInt32 inLength, SInt32 inStart);
VANTOR_EXPORT OSErr UnlockRange(SInt16 inRefNum, SInt32 inLength, SInt32 inStart);

VANTOR_END_C
