// Finding processes and reading about them, for callers that want result codes. Usable from C.
//
// A null `pPSN` that is read means the own process. -600 (procNotFound) is the answer when the list
// ends without a match, -50 when a pointer that must be given is null. Nothing here throws.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// The first process in launch order with this creator, or with this creator and file type.
VANTOR_EXPORT OSErr MoreProcFindProcessByCreator(OSType pCreator, ProcessSerialNumber* pPSN);
VANTOR_EXPORT OSErr MoreProcFindProcessBySignature(OSType pCreator, OSType pType,
                                                   ProcessSerialNumber* pPSN);

// All but name and file, whose pointers in `pInfo` become null.
VANTOR_EXPORT OSErr MoreProcGetProcessInformation(const ProcessSerialNumber* pPSN,
                                                  ProcessInfoRec* pInfo);
// `pProcessName` holds 256 bytes.
VANTOR_EXPORT OSErr MoreProcGetProcessName(const ProcessSerialNumber* pPSN, StringPtr pProcessName);
VANTOR_EXPORT OSErr MoreProcGetProcessTypeSignature(const ProcessSerialNumber* pPSN, OSType* pType,
                                                    OSType* pCreator);
VANTOR_EXPORT OSErr MoreProcGetProcessAppFile(const ProcessSerialNumber* pPSN, FSSpec* pAppFile);
VANTOR_EXPORT OSErr MoreProcGetCurrentProcessFSSpec(FSSpec* pAppFile);
VANTOR_EXPORT OSErr MoreProcIsProcessBackgroundOnly(const ProcessSerialNumber* pPSN,
                                                    Boolean* pBackgroundOnly);
// True or false, not a code.
VANTOR_EXPORT Boolean MoreProcIsProcessAtFront(const ProcessSerialNumber* pPSN);

VANTOR_END_C
