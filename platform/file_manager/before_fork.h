// What must be closed before a process forks: SQLite's locks belong to one process.
#pragma once

namespace carbon {

// Has `inClose` called before each fork from now on, with the catalog held.
void CloseBeforeFork(void (*inClose)());

// Calls them all.
void CloseForFork();

}  // namespace carbon
