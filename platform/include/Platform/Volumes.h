// Folders mounted as volumes, for tests and embedding programs.
#ifndef PLATFORM_VOLUMES_H
#define PLATFORM_VOLUMES_H

#include <Carbon/Files.h>

PLATFORM_DECLARATIONS_BEGIN

// Makes a folder the root of a volume of its own, behind the volumes that are there already, for
// every process of the user. It stays so until it is unmounted or the computer restarts, also after
// this process has ended, and has the same number each time.
//   path     of a folder; UTF-8
//   name     the volume's, UTF-8; null for the folder's own. Cut to 27 characters; a number is
//   added
//            where another volume has that name
// Returns fnfErr or dirNFErr when there is no such folder, volOnLinErr when it is a volume's root
// already, ioErr when the list of such folders cannot be written.
OSErr PlatformMountFolder(const char* path, const char* name, FSVolumeRefNum* vRefNum);

// Ends that; the folder and its files stay. Returns nsvErr, and fBsyErr for a volume that was not
// mounted by PlatformMountFolder.
OSErr PlatformUnmountFolder(FSVolumeRefNum vRefNum);

PLATFORM_DECLARATIONS_END

#endif
