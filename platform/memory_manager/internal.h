// What the resource manager does with handles beyond the public calls.
#pragma once

#include <Carbon/MacTypes.h>

#include <optional>

namespace carbon {

// Tells the live handles that one address has stood for apart. Nothing when the handle is not live.
std::optional<UInt16> HandleGeneration(Handle inHandle);

// HSetRBit or HClrRBit that works on an empty handle too. The handle must be live.
void MarkAsResource(Handle inHandle, bool inIsResource);

}  // namespace carbon
