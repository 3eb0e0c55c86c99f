// CoreFoundation's basic types and the calls that every object understands.
//
// Objects are counted. A call with Create or Copy in its name hands over a reference that the
// caller gives back with CFRelease; a call with Get lends one that lives as long as its owner.
// Counting is safe from any thread; immutable objects may be shared between threads.
#ifndef COREFOUNDATION_CFBASE_H
#define COREFOUNDATION_CFBASE_H

#include <Carbon/MacTypes.h>

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

typedef SInt32 CFIndex;
typedef UInt32 CFOptionFlags;
typedef UInt32 CFTypeID;
typedef UInt32 CFHashCode;

typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFString* CFMutableStringRef;

typedef SInt32 CFComparisonResult;
enum { kCFCompareLessThan = -1, kCFCompareEqualTo = 0, kCFCompareGreaterThan = 1 };

enum { kCFNotFound = -1 };

struct CFRange {
    CFIndex location;
    CFIndex length;
};
typedef struct CFRange CFRange;

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
    CFRange range;
    range.location = location;
    range.length = length;
    return range;
}

#endif
