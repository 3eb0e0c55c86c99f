// errno becomes a result code here and nowhere else.
#pragma once

#include <Carbon/MacTypes.h>

namespace carbon {

// For calls on a file system object. A missing last part (ENOENT) is fnfErr; a caller that knows a
// parent is missing says dirNFErr itself.
OSErr OSErrFromErrno(int inErrno);

}  // namespace carbon
