// libburn and libisofs as a whole: starting them, and what they have to say. Engine thread only.
#pragma once

#include <optional>

#include "burn/BurnFailure.h"

namespace recorder {

// Once per process, before any other call to the two. Throws BurnFailure.
void StartLibraries();
void FinishLibraries();

// Forgets what both libraries have said so far.
void ForgetMessages();

// Takes in what both have said since; they queue without end, so it is called at every turn.
// Messages for which libburn gives an errno come first, then anything as bad as a mishap that is
// not merely the consequence of a stop.
std::optional<BurnFailure> CauseFromMessages();

}  // namespace recorder
