// Events as people and scripts read them, in the syntax that AEBuildDesc takes.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

#include "Json.h"

namespace cli {

AEEventClass ClassOf(const AppleEvent& inEvent);
AEEventID IDOf(const AppleEvent& inEvent);

// The parameters in one line, like { '----':"a text", 'with':[ 1, 2 ] }. Of a long one only the
// beginning is shown, of a very long one how many bytes it has.
std::string ParametersOf(const AppleEvent& inEvent);

// All of each parameter: its keyword, its type, and the text that it can be built from again.
Json ParametersJson(const AppleEvent& inEvent);

}  // namespace cli
