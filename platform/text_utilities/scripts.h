// Which script is current, and which bytes begin its characters of two bytes.
#pragma once

#include <Carbon/Script.h>

namespace carbon {

// The script that a call means by smSystemScript or smCurrentScript; any other number stays as it
// is.
ScriptCode ResolvedScript(ScriptCode inScript);

// Whether the script's tables are there: Roman's always are, others' while they are current.
bool IsEnabled(ScriptCode inScript);

// Whether the byte is the first of a character of two.
bool IsFirstByte(UInt8 inByte, ScriptCode inScript);

}  // namespace carbon
