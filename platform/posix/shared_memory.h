// Memory that programs share through a file, safe from whoever shortens that file.
#pragma once

#include <cstddef>
#include <string>

namespace carbon {

// What happens at the next look at memory whose file has lost its end. The kernel's answer to such
// a look is SIGBUS, the end of the program; a handler does this instead.
enum class WhenShortened {
    kGoOnAlone,  // zeros of the program's own stand in for the whole of the memory
    kLengthen    // the file gets its length back, with zeros; kGoOnAlone where that fails
};

// Maps the beginning of a file for reading and writing. inPath is where it lies, to be lengthened
// there. Null, and errno, without success.
//
// The first call takes SIGBUS over. What is none of this memory goes on to whoever handled the
// signal before; a host that handles it later without doing the same, or blocks it, is on its own.
void* MapShared(int inFile, size_t inSize, WhenShortened inWhenShortened,
                const std::string& inPath);

void UnmapShared(void* inMemory, size_t inSize);

}  // namespace carbon
