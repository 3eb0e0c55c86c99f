// The mounted volumes, and which of them holds an application.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Volumes are counted from 1 in the File Manager's order; their reference numbers are negative.
// Failures are thrown as LException with the File Manager's or the Desktop Manager's code.
class VANTOR_EXPORT UVolume {
  public:
    // How many volumes are mounted. Never throws.
    static SInt16 GetNumVolumes();
    // Whether the local file system itself serves the volume at an index; a server's does not.
    static bool IsSearchable(SInt16 inIndex);
    // The reference number of the volume at an index.
    static SInt16 GetIndVolume(SInt16 inIndex);
    static bool VolHasDesktopDB(SInt16 inVRefNum);

    // The first application with this creator that the desktop database of a volume names; it is
    // not looked at. False when there is none: the volume and the directory in `outSpec` are
    // written all the same.
    static bool FindAppOnVolume(OSType inCreator, SInt16 inVRefNum, FSSpec& outSpec);
    // The same on the first volume that names one, among those that are searchable and have a
    // desktop database. A volume that fails ends the search with its error.
    static bool FindApp(OSType inCreator, FSSpec& outSpec);

    // Whether a file's type is that of an application: 'APPL', 'appe', 'APPC' or 'APPD'.
    static bool IsApplication(const FSSpec& inSpec);
};
