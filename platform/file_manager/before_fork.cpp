// Owns the list of what is closed before a fork.
#include "file_manager/before_fork.h"

#include <vector>

namespace carbon {

namespace {

std::vector<void (*)()>& Closers() {
    static auto& sClosers = *new std::vector<void (*)()>;
    return sClosers;
}

}  // namespace

void CloseBeforeFork(void (*inClose)()) {
    Closers().push_back(inClose);
}

void CloseForFork() {
    for (const auto close : Closers()) close();
}

}  // namespace carbon
