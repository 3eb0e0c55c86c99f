// Folders that are programs: what their Info.plist and PkgInfo say.
//
// Info.plist is looked for in Contents, "Support Files", Resources and the folder itself, its name
// compared without case; PkgInfo in Contents, "Support Files" and the folder itself. A property
// list that cannot be read counts as an empty one. A bundle object keeps what it read when it was
// made; once the last reference is gone, the next CFBundleCreate looks at the files again.
#ifndef COREFOUNDATION_CFBUNDLE_H
#define COREFOUNDATION_CFBUNDLE_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDictionary.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>

typedef struct __CFBundle* CFBundleRef;

PLATFORM_DECLARATIONS_BEGIN

extern const CFStringRef kCFBundleInfoDictionaryVersionKey;
extern const CFStringRef kCFBundleExecutableKey;
extern const CFStringRef kCFBundleIdentifierKey;
extern const CFStringRef kCFBundleVersionKey;
extern const CFStringRef kCFBundleDevelopmentRegionKey;
extern const CFStringRef kCFBundleNameKey;

CFTypeID CFBundleGetTypeID(void);

// The bundle at a location, the same object while one lives; NULL when that is not a folder. Any
// folder gives a bundle.
CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef bundleURL);

// The bundle that the running program is in, else the folder of the program. Lent.
CFBundleRef CFBundleGetMainBundle(void);

// The living bundle with this CFBundleIdentifier, lent; NULL when none was made.
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID);

// Type and creator as four-character codes in the machine's byte order, from PkgInfo, else from
// Info.plist (CFBundlePackageType, CFBundleSignature: four MacRoman characters each); what is still
// missing is '????' for the creator and, by the extension, 'APPL', 'FMWK' or 'BNDL' for the type.
// The pointers may be NULL. InDirectory is false, its results untouched, for a folder that has none
// of these and does not look like a bundle.
void CFBundleGetPackageInfo(CFBundleRef bundle, UInt32* packageType, UInt32* packageCreator);
Boolean CFBundleGetPackageInfoInDirectory(CFURLRef url, UInt32* packageType,
                                          UInt32* packageCreator);

// CFBundleNumericVersion, else CFBundleVersion as a number: major revision (two BCD digits), minor
// and bug-fix revision (a digit each), stage (0x20, 0x40, 0x60, 0x80) and build, from the high byte
// down. "7.0.1b3" is 0x07016003. 0 for no version, one over 10 characters, or one that has more
// than "99.9.9f255" has places for: "7.10" is 0.
UInt32 CFBundleGetVersionNumber(CFBundleRef bundle);

// The value of a key, lent: from InfoPlist.strings in the user's language if it is there, else from
// Info.plist; NULL when it is in neither, and for a NULL bundle or key.
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);

// All of Info.plist, all of InfoPlist.strings in the user's language (NULL without one). Lent.
CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle);
CFDictionaryRef CFBundleGetLocalInfoDictionary(CFBundleRef bundle);

// CFBundleIdentifier, lent; NULL without one.
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);

// The program: CFBundleExecutable, else the bundle's name without its extension, in Contents/Linux,
// Contents/MacOS or the folder itself; NULL when there is no such file.
CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle);

PLATFORM_DECLARATIONS_END

#endif
