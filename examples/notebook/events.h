// The events the notebook answers.
#pragma once

namespace notebook {

// Once, before any event. Throws LException, also when the program's resources are not there.
void InstallHandlers();

bool IsAskedToQuit();

}  // namespace notebook
