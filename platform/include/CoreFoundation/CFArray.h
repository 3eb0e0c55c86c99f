// Sequences of pointers, usually objects. Indexes start at 0.
//
// The callbacks given at creation say how values are kept and compared; NULL callbacks mean plain
// pointers. Indexes and ranges outside an array read NULL and change nothing.
#ifndef COREFOUNDATION_CFARRAY_H
#define COREFOUNDATION_CFARRAY_H

#include <CoreFoundation/CFBase.h>

typedef const struct __CFArray* CFArrayRef;
typedef struct __CFArray* CFMutableArrayRef;

typedef const void* (*CFArrayRetainCallBack)(CFAllocatorRef allocator, const void* value);
typedef void (*CFArrayReleaseCallBack)(CFAllocatorRef allocator, const void* value);
typedef CFStringRef (*CFArrayCopyDescriptionCallBack)(const void* value);
typedef Boolean (*CFArrayEqualCallBack)(const void* value1, const void* value2);

// Any of them may be NULL: values are then not counted, described by their address and equal only
// to themselves. `version` is 0.
struct CFArrayCallBacks {
    CFIndex version;
    CFArrayRetainCallBack retain;
    CFArrayReleaseCallBack release;
    CFArrayCopyDescriptionCallBack copyDescription;
    CFArrayEqualCallBack equal;
};
typedef struct CFArrayCallBacks CFArrayCallBacks;

typedef void (*CFArrayApplierFunction)(const void* value, void* context);

PLATFORM_DECLARATIONS_BEGIN

extern const CFArrayCallBacks kCFTypeArrayCallBacks;  // values are objects, retained

CFTypeID CFArrayGetTypeID(void);

// numValues values from a C array; NULL for a count below 0. The callbacks are copied.
CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex numValues,
                         const CFArrayCallBacks* callBacks);

// An immutable array with the same values and callbacks.
CFArrayRef CFArrayCreateCopy(CFAllocatorRef allocator, CFArrayRef theArray);

// An array that can change. `capacity` is a hint; 0 is fine.
CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                       const CFArrayCallBacks* callBacks);
CFMutableArrayRef CFArrayCreateMutableCopy(CFAllocatorRef allocator, CFIndex capacity,
                                           CFArrayRef theArray);

CFIndex CFArrayGetCount(CFArrayRef theArray);

// Lent, as all values read from an array are.
const void* CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx);
void CFArrayGetValues(CFArrayRef theArray, CFRange range, const void** values);

Boolean CFArrayContainsValue(CFArrayRef theArray, CFRange range, const void* value);
CFIndex CFArrayGetCountOfValue(CFArrayRef theArray, CFRange range, const void* value);

// kCFNotFound where the range does not have it.
CFIndex CFArrayGetFirstIndexOfValue(CFArrayRef theArray, CFRange range, const void* value);
CFIndex CFArrayGetLastIndexOfValue(CFArrayRef theArray, CFRange range, const void* value);

// Where a value is, or would have to be put, in a range that is in the comparator's order.
CFIndex CFArrayBSearchValues(CFArrayRef theArray, CFRange range, const void* value,
                             CFComparatorFunction comparator, void* context);

void CFArrayApplyFunction(CFArrayRef theArray, CFRange range, CFArrayApplierFunction applier,
                          void* context);

// Edits; on an array that is not mutable they change nothing.
void CFArrayAppendValue(CFMutableArrayRef theArray, const void* value);
void CFArrayInsertValueAtIndex(CFMutableArrayRef theArray, CFIndex idx, const void* value);
void CFArraySetValueAtIndex(CFMutableArrayRef theArray, CFIndex idx, const void* value);
void CFArrayRemoveValueAtIndex(CFMutableArrayRef theArray, CFIndex idx);
void CFArrayRemoveAllValues(CFMutableArrayRef theArray);
void CFArrayExchangeValuesAtIndices(CFMutableArrayRef theArray, CFIndex idx1, CFIndex idx2);
void CFArrayAppendArray(CFMutableArrayRef theArray, CFArrayRef otherArray, CFRange otherRange);

// Puts newCount values in the place of a range.
void CFArrayReplaceValues(CFMutableArrayRef theArray, CFRange range, const void** newValues,
                          CFIndex newCount);

// Puts a range in order; equal values stay in theirs.
void CFArraySortValues(CFMutableArrayRef theArray, CFRange range, CFComparatorFunction comparator,
                       void* context);

PLATFORM_DECLARATIONS_END

#endif
