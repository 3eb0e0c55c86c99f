// The folder that the user's running programs share: the process table and their sockets.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

namespace carbon {

// Gives $XDG_RUNTIME_DIR/vantor or, where that variable names no folder of the user's,
// /tmp/vantor-<uid>; creates it with mode 0700. permErr when what stands there is a link, not a
// folder, someone else's, or open to others. The first answer holds for the life of the program.
OSErr RuntimeFolder(std::string* outPath);

// The same question with nothing remembered, for one given place. Used by RuntimeFolder and tests.
OSErr ClaimFolder(const std::string& inPath);

}  // namespace carbon
