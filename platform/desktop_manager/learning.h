// What a desktop database holds without anybody having entered it.
#pragma once

#include "desktop_manager/desktop_database.h"
#include "file_manager/catalog/objects.h"

namespace carbon {

struct LearnedProgram {
    OSType creator;
    std::string path;  // of the program file
};

// The programs of the bundles that Launch Services knows, and program files (type 'APPL') in its
// folders. Must not be called with the catalog held.
std::vector<LearnedProgram> ProgramsToLearn();

// Enters those on a volume, and removes learned ones that are gone.
bool Learn(Objects& ioObjects, FSVolumeRefNum inVolume,
           const std::vector<LearnedProgram>& inPrograms, DesktopDatabase& ioDatabase);

// The row of an existing object.
DesktopApplication RowOf(const Object& inObject, OSType inCreator);

}  // namespace carbon
