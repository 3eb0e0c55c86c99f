// Whether a monitor is told of the events of a test's user.
#pragma once

#include <cstdint>
#include <fstream>

#include "support/TemporaryHome.h"

inline bool IsWatched(const TemporaryHome& inHome) {
    std::ifstream page(inHome.Root() / "run/vantor/watchers.1", std::ios::binary);
    std::uint64_t monitors = 0;
    page.read(reinterpret_cast<char*>(&monitors), sizeof monitors);
    return monitors != 0;
}
