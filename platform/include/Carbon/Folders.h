// Folder Manager: where the folders with a purpose are.
//
// Linux: the folders are those of the XDG base directories and user directories; temporary items
// and the trash are on each volume.
#ifndef CARBON_FOLDERS_H
#define CARBON_FOLDERS_H

#include <Carbon/Files.h>
#include <Carbon/MacTypes.h>

// In place of a volume.
enum {
    kOnSystemDisk = -32768,       // the first volume
    kOnAppropriateDisk = -32767,  // wherever the user's folder of this kind is
    kSystemDomain = -32766,       // the system's own; has none of the folders below
    kLocalDomain = -32765,        // for all users of the machine
    kNetworkDomain = -32764,      // for all users of the network; has none
    kUserDomain = -32763,         // the user's
    kClassicDomain = -32762       // the classic system's; has none
};

enum { kCreateFolder = 1, kDontCreateFolder = 0 };

enum {
    kSystemFolderType = 'macs',   // nowhere
    kDesktopFolderType = 'desk',  // $XDG_DESKTOP_DIR
    kTrashFolderType = 'trsh',    // $XDG_DATA_HOME/Trash/files; on other volumes .Trash-UID/files
    kPreferencesFolderType = 'pref',   // $XDG_CONFIG_HOME
    kTemporaryFolderType = 'temp',     // on the volume asked for, so that files can move from there
    kApplicationsFolderType = 'apps',  // vantor/Applications in a data folder
    kApplicationSupportFolderType = 'asup',  // $XDG_DATA_HOME; for all users /usr/local/share
    kDocumentsFolderType = 'docs',           // $XDG_DOCUMENTS_DIR
    kFontsFolderType = 'font',               // fonts in a data folder
    kVolumeRootFolderType = 'root',          // the root of the volume asked for
    kCurrentUserFolderType = 'cusr',         // the home folder
    kCachedDataFolderType = 'cach'           // $XDG_CACHE_HOME
};

PLATFORM_DECLARATIONS_BEGIN

// Finds a folder.
//   vRefNum       a volume, 0 for the default one, or one of the domains above. On a volume only
//                 what lies there is found
//   folderType    of those above
//   createFolder  whether to make a missing one; never made are the system folder and roots
//   foundVRefNum, foundDirID  where it is; 0 after an error. Each may be null
// Returns nsvErr; fnfErr when it is missing, or there is none of that type there; or why it could
// not be made (afpAccessDenied, wPrErr, dskFulErr ...).
OSErr FindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean createFolder,
                 FSVolumeRefNum* foundVRefNum, SInt32* foundDirID);

// The same, as a reference; paramErr for null.
OSErr FSFindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean createFolder,
                   FSRef* foundRef);

PLATFORM_DECLARATIONS_END

#endif
