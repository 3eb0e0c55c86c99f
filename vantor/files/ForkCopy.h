// Moving bytes between open forks: copying, and writing that is checked. Usable from C.
//
// Sizes and counts are bytes. Results are the File Manager's codes; nothing here throws.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// A block of whole kilobytes, at least one, and of fewer than asked for when memory is short. The
// caller disposes it with DisposePtr. Null, with an actual size of 0, when even that is not there.
VANTOR_EXPORT Ptr GetTempBuffer(SInt32 inRequest, SInt32* outActual);

// Makes one open fork a copy of another, by way of the caller's buffer. A multiple of 512 serves
// best; of other sizes above that, only the whole blocks are used.
// Returns paramErr, with nothing changed, for a null or empty buffer.
VANTOR_EXPORT OSErr CopyFork(SInt16 inSource, SInt16 inDestination, void* ioBuffer, SInt32 inSize);

// Writes at the mark, then reads what was written and compares it.
//   ioCount  bytes to write; the bytes written
// Returns ioErr when they differ, memFullErr when there is no room for comparing.
VANTOR_EXPORT OSErr FSWriteVerify(SInt16 inRefNum, SInt32* ioCount, const void* inBuffer);

VANTOR_END_C
