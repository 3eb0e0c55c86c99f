// Where the calling program keeps its own resources.
#pragma once

#include <optional>
#include <string>

#include "resource_manager/carrier.h"

namespace carbon {

struct ApplicationFile {
    std::string path;
    ForkKind kind;
};

// Nothing for a program without any.
std::optional<ApplicationFile> FindApplicationFile();

}  // namespace carbon
