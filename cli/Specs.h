// Paths from the command line as file specs.
#pragma once

#include <Carbon/Carbon.h>

#include <string>
#include <vector>

namespace cli {

// One file spec for each path, in order; links named on the command line are followed, so a disc
// holds what they point to. Throws one Failure that names every path which does not exist or cannot
// be read.
std::vector<FSSpec> SpecsOf(const std::vector<std::string>& inPaths);

// The file spec of one existing file or folder. Throws a Failure that names the path.
FSSpec SpecFor(const std::string& inPath);

}  // namespace cli
