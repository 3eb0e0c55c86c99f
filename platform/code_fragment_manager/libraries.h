// The shared objects that this program has loaded, by the names a caller may know them by.
#pragma once

#include <Carbon/MacTypes.h>

#include <memory>
#include <optional>
#include <string>

namespace carbon {

// The path of a loaded library. "libthing.so.1", "libthing.so", "libthing" and "thing" all name the
// same one; where several fit, the first loaded.
std::optional<std::string> FindLoadedLibrary(const std::string& inName);

// The loader's hold on a library, given back at the end.
struct CloseLibrary {
    void operator()(void* inLibrary) const;
};
using LibraryHold = std::unique_ptr<void, CloseLibrary>;

// Of a loaded library; null when it is not, or no longer, loaded.
LibraryHold HoldLoadedLibrary(const std::string& inPath);

// Loads a library by any of its names; null when there is none.
LibraryHold LoadLibrary(const std::string& inName);
std::string PathOf(const LibraryHold& inLibrary);

struct LibrarySymbol {
    void* address;
    bool isCode;
};

// What the library itself defines; the libraries that it needs do not count.
std::optional<LibrarySymbol> FindInLibrary(const LibraryHold& inLibrary, const std::string& inName);

}  // namespace carbon
