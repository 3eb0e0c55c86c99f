// Making, deleting, renaming and moving objects, with all that belongs to them.
#pragma once

#include "file_manager/catalog/located.h"

namespace carbon {

// What Locate found missing becomes a file or a folder. dupFNErr, bdNamErr.
OSErr CreateFile(const Located& inPlace, OSType inCreator, OSType inType, ScriptCode inScript);
OSErr CreateFolder(Objects& ioObjects, const Located& inPlace, SInt32* outId);

// fBsyErr for a file in use, a folder that is not empty, a root.
OSErr DeleteObject(Objects& ioObjects, const Located& inLocated);

// Its number, if the table keeps one of a file that is gone.
void ForgetFile(Objects& ioObjects, const Volume& inVolume, SInt32 inParent,
                const std::string& inDiskName);

// Into a folder (the one it lies in, for a renaming) under a name as in a file spec. dupFNErr,
// badMovErr, diffVolErr.
OSErr MoveObject(Objects& ioObjects, const Located& inLocated, const Folder& inDestination,
                 std::string_view inName);

}  // namespace carbon
