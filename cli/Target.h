// Programs as people name them: signature, name, PID or path.
#pragma once

#include <Carbon/Carbon.h>

#include <optional>
#include <string>

namespace cli {

// MacRoman, as the codes and texts of events are. Throws a Failure when it cannot be written so.
std::string MacRoman(const std::string& inUtf8);

// A code of one to four characters, filled up with spaces. Throws a Failure.
OSType CodeNamed(const std::string& inText);

// The running program that this word means: a PID, a path of its bundle or file, a signature, a
// name in any case; the first that fits, in this order. Nothing when none runs.
std::optional<ProcessSerialNumber> FindTarget(const std::string& inWord);

// The same; throws a Failure when none runs.
ProcessSerialNumber TargetNamed(const std::string& inWord);

// "Calverin (PID 123)".
std::string Described(const ProcessSerialNumber& inTarget);

}  // namespace cli
