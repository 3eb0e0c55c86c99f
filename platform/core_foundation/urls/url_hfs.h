// Paths as the File Manager writes them: "Volume:Folder:File".
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace carbon {

// The absolute path; a text that starts with ':' or has none gives a relative one. Nothing when no
// volume has the name.
std::optional<std::string> PosixFromHfs(std::u16string_view inPath);

// Nothing when no volume holds the absolute path.
std::optional<std::u16string> HfsFromPosix(const std::string& inPath);

}  // namespace carbon
