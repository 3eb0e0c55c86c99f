// Whether something can be launched, and as what.
#pragma once

#include <Carbon/Files.h>

#include "process_manager/identity.h"

namespace carbon {

// The program that a file spec stands for: of a bundle's folder, of a bundle whose program file it
// names, or of a plain program file. fnfErr and the other codes of a file spec;
// kLSNotAnApplicationErr, kLSNoExecutableErr, kLSNoLaunchPermissionErr.
OSErr LaunchableFromSpec(const FSSpec& inSpec, Program* outProgram);

}  // namespace carbon
