// Mounting a server's volume again, and the records that say how. Usable from C.
//
// A record is a block of bytes whose numbers are in the machine's byte order; offsets in it count
// from its start and lead to Pascal strings. The functions that build one allocate it: the caller
// disposes it with DisposePtr.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// How many bytes the record of a mounted volume has, and the record, without its passwords.
// paramErr or extFSErr for a volume that cannot be mounted again.
VANTOR_EXPORT OSErr GetVolMountInfoSize(ConstStr255Param inName, FSVolumeRefNum inVRefNum,
                                        SInt16* outSize);
VANTOR_EXPORT OSErr GetVolMountInfo(ConstStr255Param inName, FSVolumeRefNum inVRefNum,
                                    void* outRecord);

// Mounts the volume of a record.
VANTOR_EXPORT OSErr VolumeMount(const void* inRecord, FSVolumeRefNum* outVRefNum);

// Builds a record of 172 bytes. Of each string the field's whole width is copied, whatever its
// length: buffers of 33 bytes for the zone and the server, 28 for the volume, 32 for the user, 9
// for each password. memFullErr.
VANTOR_EXPORT OSErr BuildAFPVolMountInfo(SInt16 inFlags, SInt8 inNBPInterval, SInt8 inNBPCount,
                                         SInt16 inAuthentication, ConstStringPtr inZone,
                                         ConstStringPtr inServer, ConstStringPtr inVolume,
                                         ConstStringPtr inUser, ConstStringPtr inUserPassword,
                                         ConstStringPtr inVolumePassword,
                                         AFPVolMountInfo** outRecord);

// Reads a record. paramErr when it is of another kind of server. A name without an offset in the
// record is left as it was; a Str255 each is enough. Passwords are not told.
VANTOR_EXPORT OSErr RetrieveAFPVolMountInfo(const AFPVolMountInfo* inRecord, SInt16* outFlags,
                                            SInt16* outAuthentication, StringPtr outZone,
                                            StringPtr outServer, StringPtr outVolume,
                                            StringPtr outUser);

// The same with the name of an authentication module (33 bytes) and another address of the server,
// an AFPAlternateAddress of so many bytes (null: none). 213 bytes and the address.
VANTOR_EXPORT OSErr BuildAFPXVolMountInfo(SInt16 inFlags, SInt8 inNBPInterval, SInt8 inNBPCount,
                                          SInt16 inAuthentication, ConstStringPtr inZone,
                                          ConstStringPtr inServer, ConstStringPtr inVolume,
                                          ConstStringPtr inUser, ConstStringPtr inUserPassword,
                                          ConstStringPtr inVolumePassword, ConstStringPtr inModule,
                                          SInt32 inAddressLength, const void* inAddress,
                                          AFPXVolMountInfo** outRecord);

// `outAddress` is a new block, the caller's; null with length 0 when the record has no address.
// memFullErr.
VANTOR_EXPORT OSErr RetrieveAFPXVolMountInfo(const AFPXVolMountInfo* inRecord, SInt16* outFlags,
                                             SInt16* outAuthentication, StringPtr outZone,
                                             StringPtr outServer, StringPtr outVolume,
                                             StringPtr outUser, StringPtr outModule,
                                             SInt32* outAddressLength, Ptr* outAddress);

VANTOR_END_C
