// CoreFoundation's basic types and the calls that every object understands.
//
// Objects are counted. A call with Create or Copy in its name hands over a reference that the
// caller gives back with CFRelease; a call with Get lends one that lives as long as its owner.
// Counting is safe from any thread; immutable objects may be shared between threads, a mutable one
// belongs to one thread at a time. Calls that make an object return NULL when memory is short or
// an argument makes no sense.
#ifndef COREFOUNDATION_CFBASE_H
#define COREFOUNDATION_CFBASE_H

#include <Carbon/MacTypes.h>
#include <Platform/Declarations.h>

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
typedef const struct __CFNull* CFNullRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFString* CFMutableStringRef;
typedef CFTypeRef CFPropertyListRef;  // a string, number, Boolean, date, data, array or dictionary

typedef SInt32 CFComparisonResult;
enum { kCFCompareLessThan = -1, kCFCompareEqualTo = 0, kCFCompareGreaterThan = 1 };

typedef CFComparisonResult (*CFComparatorFunction)(const void* val1, const void* val2,
                                                   void* context);

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

// How an allocator of a host's own gets and frees memory. `info` is handed to every call; calls
// that are NULL do nothing. `version` is 0.
typedef const void* (*CFAllocatorRetainCallBack)(const void* info);
typedef void (*CFAllocatorReleaseCallBack)(const void* info);
typedef CFStringRef (*CFAllocatorCopyDescriptionCallBack)(const void* info);
typedef void* (*CFAllocatorAllocateCallBack)(CFIndex allocSize, CFOptionFlags hint, void* info);
typedef void* (*CFAllocatorReallocateCallBack)(void* ptr, CFIndex newsize, CFOptionFlags hint,
                                               void* info);
typedef void (*CFAllocatorDeallocateCallBack)(void* ptr, void* info);
typedef CFIndex (*CFAllocatorPreferredSizeCallBack)(CFIndex size, CFOptionFlags hint, void* info);

struct CFAllocatorContext {
    CFIndex version;
    void* info;
    CFAllocatorRetainCallBack retain;
    CFAllocatorReleaseCallBack release;
    CFAllocatorCopyDescriptionCallBack copyDescription;
    CFAllocatorAllocateCallBack allocate;
    CFAllocatorReallocateCallBack reallocate;
    CFAllocatorDeallocateCallBack deallocate;
    CFAllocatorPreferredSizeCallBack preferredSize;
};
typedef struct CFAllocatorContext CFAllocatorContext;

PLATFORM_DECLARATIONS_BEGIN

// Allocators. Linux: objects always live on the process's heap; an allocator given to a Create call
// is used only where a call says that it frees the caller's bytes.
extern const CFAllocatorRef kCFAllocatorDefault;        // NULL: the default allocator
extern const CFAllocatorRef kCFAllocatorSystemDefault;  // the process's heap
extern const CFAllocatorRef kCFAllocatorMalloc;         // malloc, realloc and free
extern const CFAllocatorRef kCFAllocatorNull;           // gives no memory and frees none

// The object that stands for no value where NULL cannot.
extern const CFNullRef kCFNull;
CFTypeID CFNullGetTypeID(void);

CFTypeID CFAllocatorGetTypeID(void);

// The allocator that kCFAllocatorDefault stands for: kCFAllocatorSystemDefault. Not owned.
CFAllocatorRef CFAllocatorGetDefault(void);

// An allocator that calls the functions of *context, which is copied. `allocator` may be NULL.
CFAllocatorRef CFAllocatorCreate(CFAllocatorRef allocator, CFAllocatorContext* context);

// A block of `size` bytes; NULL for a size below 1 or when there is none. `hint` is 0.
void* CFAllocatorAllocate(CFAllocatorRef allocator, CFIndex size, CFOptionFlags hint);

// Resizes a block: NULL `ptr` allocates, a new size of 0 frees and gives NULL.
void* CFAllocatorReallocate(CFAllocatorRef allocator, void* ptr, CFIndex newsize,
                            CFOptionFlags hint);

// Frees a block of this allocator; NULL does nothing.
void CFAllocatorDeallocate(CFAllocatorRef allocator, void* ptr);

// One more, one less reference; the last CFRelease frees the object. NULL stops the program.
CFTypeRef CFRetain(CFTypeRef cf);
void CFRelease(CFTypeRef cf);

// The current count: 1 for a new object, 0x7FFFFFFF for a constant, which is never freed.
CFIndex CFGetRetainCount(CFTypeRef cf);

// Which kind of object this is, as the XxxGetTypeID calls number them. The numbers mean nothing
// outside the process.
CFTypeID CFGetTypeID(CFTypeRef cf);

// The name of a kind, such as "CFString"; NULL for a number no kind has.
CFStringRef CFCopyTypeIDDescription(CFTypeID type_id);

// Whether two objects are of one kind and mean the same. Equal objects have equal hashes.
Boolean CFEqual(CFTypeRef cf1, CFTypeRef cf2);
CFHashCode CFHash(CFTypeRef cf);

// A description for developers; its form may change.
CFStringRef CFCopyDescription(CFTypeRef cf);

// Writes a description and a line end to standard error. NULL is shown as "(null)".
void CFShow(CFTypeRef obj);

PLATFORM_DECLARATIONS_END

#endif
