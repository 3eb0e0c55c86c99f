// The one Quickdraw type that event calls pass along; there is no screen here, so a region is never
// made.
#ifndef CARBON_QUICKDRAW_H
#define CARBON_QUICKDRAW_H

#include <Carbon/MacTypes.h>

typedef struct OpaqueRgnHandle* RgnHandle;

#endif
