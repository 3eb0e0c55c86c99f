// JSON on standard output, one object a line.
#pragma once

#include <nlohmann/json.hpp>

namespace cli {

using Json = nlohmann::ordered_json;

// Text that is no UTF-8 (a file name may be anything) is shown with replacement characters.
void PrintJson(const Json& inValue);

}  // namespace cli
