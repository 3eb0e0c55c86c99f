// The desktop databases that this process has open, and their numbers.
#pragma once

#include <Carbon/MacErrors.h>

#include <functional>

#include "desktop_manager/desktop_database.h"
#include "desktop_manager/learning.h"
#include "file_manager/catalog/objects.h"
#include "file_manager/parameter_block.h"

namespace carbon {

// What a call does with a database, and its result.
using DesktopWork = std::function<OSErr(Objects&, FSVolumeRefNum, DesktopDatabase&)>;

// Opens the database of a volume for this process. `outNumber` is the same as long as it is open;
// `outWasEmpty` tells of one that was just made and holds nothing. nsvErr, extFSErr for a volume
// that has none, ioErr, desktopDamagedErr.
OSErr OpenDesktop(ConstStr255Param inName, FSVolumeRefNum inVolume, SInt16* outNumber,
                  bool* outWasEmpty);

// rfNumErr.
OSErr CloseDesktop(SInt16 inNumber);

// Removes the file of a volume's database. fBsyErr while this process has it open.
OSErr DeleteDesktop(ConstStr255Param inName, FSVolumeRefNum inVolume);

// Runs `inWork` on an open database; once more on a new one if the first is damaged. rfNumErr,
// nsvErr when the volume is gone, desktopDamagedErr.
OSErr WithDesktop(SInt16 inNumber, const DesktopWork& inWork);

// Runs one call on its record, which may be null, and leaves its result there.
template <typename Call>
OSErr PerformOnDesktop(DTPBPtr ioBlock, Call inCall) {
    return ioBlock ? Perform(ioBlock, inCall) : OSErr(paramErr);
}

// Where the database of a volume lies; empty when nowhere.
std::string DesktopPath(const Volume& inVolume);

}  // namespace carbon
