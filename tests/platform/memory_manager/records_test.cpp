// Sizes and constants that programs rely on.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Carbon/Resources.h>

static_assert(sizeof(Size) == 4 && maxSize == 0x7FFFFFF0);
static_assert(kHandleLockedMask == 1 << kHandleLockedBit && kHandleLockedMask == 0x80);
static_assert(kHandlePurgeableMask == 1 << kHandlePurgeableBit && kHandlePurgeableMask == 0x40);
static_assert(kHandleIsResourceMask == 1 << kHandleIsResourceBit && kHandleIsResourceMask == 0x20);
static_assert(memFullErr == -108 && nilHandleErr == -109 && memWZErr == -111 && memPurErr == -112);
static_assert(memBCErr == -115 && memLockedErr == -117);
static_assert(resNotFound == -192 && resAttrErr == -198);
static_assert(resChanged == 2 && resPreload == 4 && resProtected == 8 && resLocked == 16);
static_assert(resPurgeable == 32 && resSysHeap == 64);
static_assert(sizeof(ResAttributes) == 2 && sizeof(ResFileRefNum) == 2);
