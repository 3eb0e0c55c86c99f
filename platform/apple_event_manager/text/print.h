// Descriptors as the text that they can be built from again.
#pragma once

#include <Carbon/AEDataModel.h>

#include <string>

namespace carbon {

// ASCII on one line.
std::string PrintedDesc(const AEDesc& inDesc);

}  // namespace carbon
