// Launch Services: which application belongs to a creator, a bundle identifier or a name.
//
// Known are the bundles in these folders, and those registered by LSRegisterURL or LSRegisterFSRef:
//   $XDG_DATA_HOME/vantor/Applications, then the same below each folder of $XDG_DATA_DIRS
//   the running program's folder; share/vantor/Applications beside it and beside the library's
// Of several that fit, the newest version wins, then the one found first in that order. What has
// been added, changed or removed since the last question is noticed.
#ifndef CARBON_LSINFO_H
#define CARBON_LSINFO_H

#include <Carbon/Files.h>
#include <Carbon/MacTypes.h>
#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFURL.h>

enum {
    kLSAppInTrashErr = -10660,
    kLSExecutableIncorrectFormat = -10661,  // the program is not for this system
    kLSUnknownErr = -10810,
    kLSNotAnApplicationErr = -10811,
    kLSDataUnavailableErr = -10813,
    kLSApplicationNotFoundErr = -10814,
    kLSUnknownTypeErr = -10815,
    kLSDataTooOldErr = -10816,
    kLSDataErr = -10817,              // a malformed property list
    kLSLaunchInProgressErr = -10818,  // another launch takes too long to be waited for
    kLSServerCommunicationErr = -10822,
    kLSNoRegistrationInfoErr = -10824,  // not a bundle that claims anything
    kLSIncompatibleSystemVersionErr = -10825,
    kLSNoLaunchPermissionErr = -10826,  // the user may not run the program
    kLSNoExecutableErr = -10827         // a bundle without its program
};

// Roles. They never keep an application with the right creator from being found.
typedef OptionBits LSRolesMask;
enum { kLSRolesNone = 0x00000001, kLSRolesViewer = 0x00000002, kLSRolesEditor = 0x00000004 };
enum { kLSRolesShell = 0x00000008 };
#define kLSRolesAll ((LSRolesMask)0xFFFFFFFFU)

enum { kLSUnknownType = 0, kLSUnknownCreator = 0 };

PLATFORM_DECLARATIONS_BEGIN

// The application for documents of a type, creator and extension.
//   inType       0 or '????': any
//   inCreator    0: any
//   inExtension  without dot; may be null. Among the applications that fit the type and creator,
//                one that declares this extension is required
//   outAppRef    receives the bundle's folder; may be null
//   outAppURL    receives its URL, which the caller releases; may be null. Not both null
// With a creator the answer is the application of that signature, whatever documents it declares.
// kLSApplicationNotFoundErr; paramErr when all three are left open or both answers are null.
OSStatus LSGetApplicationForInfo(OSType inType, OSType inCreator, CFStringRef inExtension,
                                 LSRolesMask inRoleMask, FSRef* outAppRef, CFURLRef* outAppURL);

// The application with a bundle identifier, else with a creator, else with a name (with or without
// ".app"). Identifier and name are compared without regard to case. inCreator 0 and null strings
// are passed over; not all three may be. The answers are those of LSGetApplicationForInfo.
OSStatus LSFindApplicationForInfo(OSType inCreator, CFStringRef inBundleID, CFStringRef inName,
                                  FSRef* outAppRef, CFURLRef* outAppURL);

// Makes a bundle outside the searched folders known, for this and later programs of the user.
//   inUpdate  true: read the bundle again even when it looks unchanged
// fnfErr; kLSNoRegistrationInfoErr for what is not a bundle with a program; kLSDataErr for a
// malformed Info.plist; File Manager codes when the register cannot be written.
OSStatus LSRegisterURL(CFURLRef inURL, Boolean inUpdate);
OSStatus LSRegisterFSRef(const FSRef* inRef, Boolean inUpdate);

PLATFORM_DECLARATIONS_END

#endif
