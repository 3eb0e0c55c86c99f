// The texts of the alerts and what stands for ^0 to ^3 in them.
#pragma once

#include <Carbon/MacTypes.h>

#include <array>
#include <string>

namespace carbon {

struct ParamTexts {
    std::array<std::array<UInt8, 256>, 4> strings{};  // Pascal strings
};

// The template of an alert; null when there is no alert with this number.
const char* AlertTemplate(SInt16 inAlertID);

// The template with its parameters put in, UTF-8. What is put in is not looked through again.
std::string AlertText(const char* inTemplate, const ParamTexts& inParams);

}  // namespace carbon
