// Owns the texts of the alerts.
#include "system_services/alert_text.h"

#include <string_view>

#include "system_services/pascal_text.h"

namespace carbon {
namespace {

struct Template {
    SInt16 alertID;
    const char* text;
};

constexpr Template kTemplates[] = {
    {251, "An exception is thrown: ^0\n    ^2\n    in ^1, line ^3"},
    {252, "A condition failed: ^0\n    ^2\n    in ^1, line ^3"},
};

bool IsParameter(std::string_view inRest) {
    return inRest.size() >= 2 && inRest[0] == '^' && inRest[1] >= '0' && inRest[1] <= '3';
}

}  // namespace

const char* AlertTemplate(SInt16 inAlertID) {
    for (const Template& alert : kTemplates)
        if (alert.alertID == inAlertID) return alert.text;
    return nullptr;
}

std::string AlertText(const char* inTemplate, const ParamTexts& inParams) {
    std::string text;
    for (std::string_view rest = inTemplate; !rest.empty();) {
        const bool isParameter = IsParameter(rest);
        if (isParameter)
            text += Utf8FromPascal(inParams.strings[size_t(rest[1] - '0')].data());
        else
            text += rest[0];
        rest.remove_prefix(isParameter ? 2 : 1);
    }
    return text;
}

}  // namespace carbon
