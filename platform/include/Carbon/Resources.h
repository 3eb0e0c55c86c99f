// Resource Manager: which handles are resources, and giving them back.
//
// Every call but ResError leaves its result there. A handle that is null, plain, detached or no
// longer live is not a resource (resNotFound).
#ifndef CARBON_RESOURCES_H
#define CARBON_RESOURCES_H

#include <Carbon/MacTypes.h>

typedef SInt16 ResAttributes;
typedef SInt16 ResFileRefNum;

enum {
    resSysHeap = 64,
    resPurgeable = 32,
    resLocked = 16,
    resProtected = 8,
    resPreload = 4,
    resChanged = 2
};

PLATFORM_DECLARATIONS_BEGIN

// The result of this thread's last Resource Manager call. Reading it does not change it.
OSErr ResError(void);

// The attributes of a resource; 0 with resNotFound for any other handle.
ResAttributes GetResAttrs(Handle theResource);

// The number of the file that owns a resource; -1 with resNotFound for any other handle.
ResFileRefNum HomeResFile(Handle theResource);

// Frees a resource's memory; the handle is not valid afterwards. A changed resource stays, with
// noErr. resNotFound, and nothing done, for any other handle.
void ReleaseResource(Handle theResource);

PLATFORM_DECLARATIONS_END

#endif
