// The bundles that the user's programs have made known with LSRegisterURL.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>
#include <vector>

namespace carbon {

// The file that holds them; empty when there is no state folder.
std::string RegisterPath();

// Absolute paths in the order of their registration; some may no longer exist.
std::vector<std::string> RegisteredBundles();

// Adds a path unless it is there already. File Manager codes when the register cannot be written;
// it is then as it was.
OSErr AddRegisteredBundle(const std::string& inPath);

}  // namespace carbon
