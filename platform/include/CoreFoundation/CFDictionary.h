// Values looked up by key, both pointers, usually objects.
//
// The callbacks given at creation say how keys and values are kept and compared; NULL callbacks
// mean plain pointers. The order of enumeration means nothing.
#ifndef COREFOUNDATION_CFDICTIONARY_H
#define COREFOUNDATION_CFDICTIONARY_H

#include <CoreFoundation/CFBase.h>

typedef const struct __CFDictionary* CFDictionaryRef;
typedef struct __CFDictionary* CFMutableDictionaryRef;

typedef const void* (*CFDictionaryRetainCallBack)(CFAllocatorRef allocator, const void* value);
typedef void (*CFDictionaryReleaseCallBack)(CFAllocatorRef allocator, const void* value);
typedef CFStringRef (*CFDictionaryCopyDescriptionCallBack)(const void* value);
typedef Boolean (*CFDictionaryEqualCallBack)(const void* value1, const void* value2);
typedef CFHashCode (*CFDictionaryHashCallBack)(const void* value);

// Any of them may be NULL: pointers are then not counted, described by their address and equal only
// to themselves. Keys that are equal have equal hashes. `version` is 0.
struct CFDictionaryKeyCallBacks {
    CFIndex version;
    CFDictionaryRetainCallBack retain;
    CFDictionaryReleaseCallBack release;
    CFDictionaryCopyDescriptionCallBack copyDescription;
    CFDictionaryEqualCallBack equal;
    CFDictionaryHashCallBack hash;
};
typedef struct CFDictionaryKeyCallBacks CFDictionaryKeyCallBacks;

struct CFDictionaryValueCallBacks {
    CFIndex version;
    CFDictionaryRetainCallBack retain;
    CFDictionaryReleaseCallBack release;
    CFDictionaryCopyDescriptionCallBack copyDescription;
    CFDictionaryEqualCallBack equal;
};
typedef struct CFDictionaryValueCallBacks CFDictionaryValueCallBacks;

typedef void (*CFDictionaryApplierFunction)(const void* key, const void* value, void* context);

PLATFORM_DECLARATIONS_BEGIN

extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;  // keys are objects, retained
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CFTypeID CFDictionaryGetTypeID(void);

// numValues pairs from two C arrays, of equal keys the first; NULL for a count below 0.
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex numValues, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks);

// An immutable dictionary with the same pairs and callbacks.
CFDictionaryRef CFDictionaryCreateCopy(CFAllocatorRef allocator, CFDictionaryRef theDict);

// A dictionary that can change. `capacity` is a hint; 0 is fine.
CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks);
CFMutableDictionaryRef CFDictionaryCreateMutableCopy(CFAllocatorRef allocator, CFIndex capacity,
                                                     CFDictionaryRef theDict);

CFIndex CFDictionaryGetCount(CFDictionaryRef theDict);
Boolean CFDictionaryContainsKey(CFDictionaryRef theDict, const void* key);
Boolean CFDictionaryContainsValue(CFDictionaryRef theDict, const void* value);
CFIndex CFDictionaryGetCountOfKey(CFDictionaryRef theDict, const void* key);  // 0 or 1
CFIndex CFDictionaryGetCountOfValue(CFDictionaryRef theDict, const void* value);

// The value, lent, or NULL. IfPresent tells a NULL value from no value; value may be NULL.
const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key);
Boolean CFDictionaryGetValueIfPresent(CFDictionaryRef theDict, const void* key, const void** value);

// All pairs, in one order for both arrays; each of which may be NULL.
void CFDictionaryGetKeysAndValues(CFDictionaryRef theDict, const void** keys, const void** values);
void CFDictionaryApplyFunction(CFDictionaryRef theDict, CFDictionaryApplierFunction applier,
                               void* context);

// Edits; on a dictionary that is not mutable they change nothing. Add leaves an existing key's
// value alone, Replace does nothing for a new key, Set does both.
void CFDictionaryAddValue(CFMutableDictionaryRef theDict, const void* key, const void* value);
void CFDictionarySetValue(CFMutableDictionaryRef theDict, const void* key, const void* value);
void CFDictionaryReplaceValue(CFMutableDictionaryRef theDict, const void* key, const void* value);
void CFDictionaryRemoveValue(CFMutableDictionaryRef theDict, const void* key);
void CFDictionaryRemoveAllValues(CFMutableDictionaryRef theDict);

PLATFORM_DECLARATIONS_END

#endif
