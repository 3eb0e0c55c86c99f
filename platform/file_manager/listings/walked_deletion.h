// Deleting the file that a walk has just told of.
#pragma once

#include "file_manager/catalog/objects.h"

namespace carbon {

// Whoever empties a folder asks for its next entry and deletes that. The walk then has the folder
// open and knows the file, so that no path need be followed and nothing be looked at twice.
// False where anything is out of the ordinary, and nothing has been done then; else the error is
// as DeleteObject's.
bool DeleteWalked(Objects& ioObjects, FSVolumeRefNum inVolume, SInt32 inDirectory,
                  std::string_view inName, OSErr* outError);

}  // namespace carbon
