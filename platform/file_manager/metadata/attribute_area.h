// The extended attributes that Mac OS X keeps behind the Finder information of an AppleDouble file.
#pragma once

#include <Carbon/MacTypes.h>

#include <vector>

namespace carbon {

// The area tells where its parts lie from the start of the file: corrects that in the bytes of an
// entry that moves. Bytes that hold no area, or one that is not sound, stay as they are.
void MoveAttributeArea(UInt32 inOldOffset, UInt32 inNewOffset, std::vector<UInt8>* ioEntry);

}  // namespace carbon
