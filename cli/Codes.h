// Four-character codes as people write them.
#pragma once

#include <Carbon/Carbon.h>

#include <optional>
#include <string>

namespace cli {

// MacRoman, as the codes and texts of events are. Throws a Failure when it cannot be written so.
std::string MacRoman(const std::string& inUtf8);

// The same; nothing when it cannot be written so, or has a zero in it.
std::optional<std::string> InMacRoman(const std::string& inUtf8);

// A code of one to four characters, filled up with spaces; 'core' in quotes and $636F7265$ are the
// same. Throws a Failure.
OSType CodeNamed(const std::string& inText);

// Whether CodeNamed takes it. Never throws.
bool IsCode(const std::string& inText);

// All four characters in UTF-8; $00000001$ when one is a control character.
std::string CodeText(OSType inCode);

// The same as it stands in the build syntax: 'core', or '$00000001$'.
std::string QuotedCode(OSType inCode);

// Text of other programs for the terminal: each control character is a question mark.
std::string Shown(const std::string& inUtf8);

}  // namespace cli
