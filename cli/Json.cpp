// Owns the printing of JSON.
#include "Json.h"

#include <cstdio>

namespace cli {

void PrintJson(const Json& inValue) {
    std::printf("%s\n", inValue.dump(-1, ' ', false, Json::error_handler_t::replace).c_str());
    std::fflush(stdout);
}

}  // namespace cli
