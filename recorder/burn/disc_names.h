// What becomes of a name on a disc.
#pragma once

#include <string>
#include <vector>

namespace recorder {

// Whether there is a zero byte, behind which the system would see nothing of a name or path.
inline bool HasZero(const std::string& inText) {
    return inText.find('\0') != std::string::npos;
}

// One line when readers that use Joliet names show this name differently; none when all show it as
// it is.
std::vector<std::string> NamesThatChange(const std::string& inName, const std::string& inPath);

// UTF-16 units the name takes, or -1 when it is not UTF-8; sets *outBeyond when a character needs
// two units.
int Utf16Units(const std::string& inName, bool* outBeyond);

// The name as HFS+ compares it.
std::u16string FoldedName(const std::string& inName);

// Cuts the name to at most inBytes without splitting a character.
std::string CutName(const std::string& inName, size_t inBytes);

}  // namespace recorder
