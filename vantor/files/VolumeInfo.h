// What a volume is: its number, size, locks, parameters; which are there; the default one. Usable
// from C.
//
// A volume is named by `inName` or `inPath` (a volume's name or a full path, with a colon; may be
// null) and by `inVRefNum` (a volume's, working directory's or drive's number). A name that leads
// to a volume overrides the number. Results are the File Manager's: nsvErr for a volume that is not
// there. Outputs are written only on success, unless it says otherwise.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// The volume's parameters, to be read with VolumeParameters.h.
//   ioSize  bytes wanted, then bytes that came; 32 are enough for all fields but the last
VANTOR_EXPORT OSErr HGetVolParms(ConstStr255Param inName, FSVolumeRefNum inVRefNum,
                                 GetVolParmsInfoBuffer* inParms, SInt32* ioSize);

// The volume's information record, without its name; the caller's path stays as it is. paramErr for
// a null record.
VANTOR_EXPORT OSErr GetVolumeInfoNoName(ConstStr255Param inPath, FSVolumeRefNum inVRefNum,
                                        HParamBlockRec* ioBlock);
VANTOR_EXPORT OSErr XGetVolumeInfoNoName(ConstStr255Param inPath, FSVolumeRefNum inVRefNum,
                                         XVolumeParam* ioBlock);

// The volume's own number.
VANTOR_EXPORT OSErr DetermineVRefNum(ConstStr255Param inPath, FSVolumeRefNum inVRefNum,
                                     FSVolumeRefNum* outVRefNum);

// The catalog record of a file or folder, without its name. For a null or empty name, that of the
// directory itself.
VANTOR_EXPORT OSErr GetCatInfoNoName(FSVolumeRefNum inVRefNum, SInt32 inDirID,
                                     ConstStr255Param inName, CInfoPBRec* ioBlock);

// Free and total bytes. `outName` (a Str255, may be null) receives the volume's name. With 32 bits,
// 4 GB and more read as 0xFFFFFE00.
VANTOR_EXPORT OSErr XGetVInfo(FSVolumeRefNum inVolume, StringPtr outName,
                              FSVolumeRefNum* outVRefNum, UInt64* outFreeBytes,
                              UInt64* outTotalBytes);
VANTOR_EXPORT OSErr HGetVInfo(FSVolumeRefNum inVolume, StringPtr outName,
                              FSVolumeRefNum* outVRefNum, UInt32* outFreeBytes,
                              UInt32* outTotalBytes);

// wPrErr when the medium cannot be written, else vLckdErr when the volume was locked, else noErr.
VANTOR_EXPORT OSErr CheckVolLock(ConstStr255Param inPath, FSVolumeRefNum inVRefNum);

// Which file system serves the volume; 0 is the local one.
VANTOR_EXPORT OSErr GetVolFileSystemID(ConstStr255Param inPath, FSVolumeRefNum inVRefNum,
                                       SInt16* outFileSystemID);

// Takes the volume away, with its medium if that can be removed.
VANTOR_EXPORT OSErr UnmountAndEject(ConstStr255Param inPath, FSVolumeRefNum inVRefNum);

// The roots of the mounted volumes, from the one at `ioIndex` on (1 is the first, and never lower:
// paramErr). noErr when `inCapacity` of them were written, nsvErr when there were no more;
// `outCount` are there in both cases, and `ioIndex` is where to go on.
VANTOR_EXPORT OSErr OnLine(FSSpec* outVolumes, SInt16 inCapacity, SInt16* outCount,
                           SInt16* ioIndex);

// Makes another directory the default one, telling the old one; and back.
VANTOR_EXPORT OSErr SetDefault(FSVolumeRefNum inNewVRefNum, SInt32 inNewDirID,
                               FSVolumeRefNum* outOldVRefNum, SInt32* outOldDirID);
VANTOR_EXPORT OSErr RestoreDefault(FSVolumeRefNum inOldVRefNum, SInt32 inOldDirID);

VANTOR_END_C
