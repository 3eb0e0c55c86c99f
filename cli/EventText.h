// Events as people and scripts read them, in the syntax that AEBuildDesc takes.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

#include "Json.h"
#include "Vocabulary.h"

namespace cli {

AEEventClass ClassOf(const AppleEvent& inEvent);
AEEventID IDOf(const AppleEvent& inEvent);

// The parameters in one line, like { '----':"a text", 'with':[ 1, 2 ] }. Of a long one only the
// beginning is shown, of a very long one how many bytes it has. Names stand behind the codes that
// have some; the parameters are those of `inTerm`, which may be null.
std::string ParametersOf(const AppleEvent& inEvent, const Vocabulary& inWords,
                         const EventTerm* inTerm);

// All of each parameter: its keyword, its type, and the text that it can be built from again; the
// name of the keyword and the text with names where there are some.
Json ParametersJson(const AppleEvent& inEvent, const Vocabulary& inWords, const EventTerm* inTerm);

}  // namespace cli
