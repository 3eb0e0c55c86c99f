// Descriptors without items, and codes, as text.
#pragma once

#include <string>

#include "apple_event_manager/data/wire.h"

namespace carbon {

// In quotes; in hexadecimal too when it holds other characters than printable ASCII, or a quote.
void PrintCode(OSType inCode, std::string& ioText);

void PrintLeaf(const Item& inItem, std::string& ioText);

}  // namespace carbon
