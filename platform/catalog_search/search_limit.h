// How long one part of a search may take.
#pragma once

#include "file_manager/catalog/objects.h"
#include "posix/deadline.h"

namespace carbon {

// To its deadline, and while others wait for the catalog only until their patience ends.
struct SearchLimit {
    Moment deadline = kNever;
    Moment patience = kNever;

    bool IsDeadlineOver() const { return deadline != kNever && Clock::now() >= deadline; }
    bool IsOver() const {
        return IsDeadlineOver() || (Catalog::IsAwaited() && Clock::now() >= patience);
    }
};

}  // namespace carbon
