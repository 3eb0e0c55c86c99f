// Names that somebody may have meant.
#pragma once

#include <string>
#include <vector>

namespace cli {

// Whether the names are the same but for upper and lower case.
bool IsSameName(const std::string& inOne, const std::string& inOther);

// Up to three of the names that differ from this one by little, the nearest first, or that hold it.
std::vector<std::string> NearNames(const std::string& inName,
                                   const std::vector<std::string>& inNames);

}  // namespace cli
