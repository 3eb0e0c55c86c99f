// The catalog search that walks: folder by folder, item by item. For the other files of this
// folder.
#pragma once

#include <Carbon/Carbon.h>

// Searches the folder `inStartDirID` of the volume that `ioBlock` names and all below it, itself
// included, for what the block describes as for PBCatSearchSync.
OSErr IndexedSearch(CSParamPtr ioBlock, SInt32 inStartDirID);
