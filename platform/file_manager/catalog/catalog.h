// From specs and references to paths and back: what other managers need of the File Manager.
#pragma once

#include <Carbon/Files.h>

#include <string>

namespace carbon {

// The absolute path of the object a file spec names. fnfErr sets the path too: only its last part
// is missing. Else nsvErr, dirNFErr, bdNamErr, afpAccessDenied, and the path stays as it was.
OSErr PathFromSpec(const FSSpec& inSpec, std::string* outPath);

// The file spec of the object at a path (a relative one starts in the working directory). A
// symbolic link at its end is the object itself, those on the way are followed. fnfErr sets the
// file spec too, if one can hold the missing last part.
OSErr SpecFromPath(const std::string& inPath, FSSpec* outSpec);

// The same for references, which name existing objects only.
OSErr PathFromRef(const FSRef& inRef, std::string* outPath);
OSErr RefFromPath(const std::string& inPath, FSRef* outRef);

}  // namespace carbon
