// Bytes as an object.
#ifndef COREFOUNDATION_CFDATA_H
#define COREFOUNDATION_CFDATA_H

#include <CoreFoundation/CFBase.h>

typedef const struct __CFData* CFDataRef;
typedef struct __CFData* CFMutableDataRef;

PLATFORM_DECLARATIONS_BEGIN

CFTypeID CFDataGetTypeID(void);

// A copy of `length` bytes; NULL for a length below 0.
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);

// An immutable `theData` itself, retained; a copy of a mutable one.
CFDataRef CFDataCreateCopy(CFAllocatorRef allocator, CFDataRef theData);

// Bytes that can change; a capacity over 0 limits their number (edits beyond it change nothing).
CFMutableDataRef CFDataCreateMutable(CFAllocatorRef allocator, CFIndex capacity);
CFMutableDataRef CFDataCreateMutableCopy(CFAllocatorRef allocator, CFIndex capacity,
                                         CFDataRef theData);

CFIndex CFDataGetLength(CFDataRef theData);  // bytes

// The bytes themselves, until the object changes or goes.
const UInt8* CFDataGetBytePtr(CFDataRef theData);
UInt8* CFDataGetMutableBytePtr(CFMutableDataRef theData);

// Copies the bytes of the range, as far as they exist.
void CFDataGetBytes(CFDataRef theData, CFRange range, UInt8* buffer);

// Edits; on data that is not mutable they change nothing. New bytes are zero, ranges are cut to the
// data.
void CFDataSetLength(CFMutableDataRef theData, CFIndex length);
void CFDataIncreaseLength(CFMutableDataRef theData, CFIndex extraLength);
void CFDataAppendBytes(CFMutableDataRef theData, const UInt8* bytes, CFIndex length);
void CFDataReplaceBytes(CFMutableDataRef theData, CFRange range, const UInt8* newBytes,
                        CFIndex newLength);
void CFDataDeleteBytes(CFMutableDataRef theData, CFRange range);

PLATFORM_DECLARATIONS_END

#endif
