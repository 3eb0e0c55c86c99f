// Reading what an event brings.
#pragma once

#include <Carbon/Carbon.h>

#include <string>
#include <vector>

namespace recorder {

// Reads a parameter that makes no difference.
void Accept(const AppleEvent& inEvent, AEKeyword inKeyword);

bool OptionalBoolean(const AppleEvent& inEvent, AEKeyword inKeyword, bool inDefault);

// The paths in a list of file specs, aliases, file URLs or UTF-8 paths, or in one of them alone.
std::vector<std::string> PathsFrom(const AEDesc& inFiles);

}  // namespace recorder
