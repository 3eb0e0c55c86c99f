// A block: the caller's bytes behind a header that knows their number and tells when it was
// damaged.
#pragma once

#include <Carbon/MacTypes.h>

namespace carbon {

// Null when there is no room or the size is out of range.
Ptr NewBlock(Size inSize, bool inClear);
void FreeBlock(Ptr inBlock);

Size BlockSize(Ptr inBlock);

// False when the bytes before the block were overwritten, or it is none.
bool IsIntact(Ptr inBlock);

// Changes the size where the block stands, or does nothing and returns false.
bool ResizeInPlace(Ptr inBlock, Size inSize);

// Returns the block, which may have moved; null when there is no room, and the old one stays.
Ptr ResizeBlock(Ptr inBlock, Size inSize);

}  // namespace carbon
