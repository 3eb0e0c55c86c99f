// Runs the `vantor` that the build has made.
#pragma once

#include <string>
#include <vector>

#include "support/Command.h"

inline std::string VantorProgram() {
    return ProgramFolder() + "/vantor";
}

inline CommandResult Vantor(std::vector<std::string> inWords,
                            const CommandOptions& inOptions = {}) {
    inWords.insert(inWords.begin(), VantorProgram());
    return RunCommand(inWords, inOptions);
}
