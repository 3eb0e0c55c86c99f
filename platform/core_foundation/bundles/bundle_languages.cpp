// The languages a user reads, as bundles name them.
#include <cstdlib>
#include <cstring>

#include "core_foundation/bundles/bundle_contents.h"

namespace carbon {

namespace {

// Older bundles name these in English.
constexpr const char* kOldNames[][2] = {{"en", "English"},  {"fr", "French"},     {"de", "German"},
                                        {"ja", "Japanese"}, {"es", "Spanish"},    {"it", "Italian"},
                                        {"nl", "Dutch"},    {"pt", "Portuguese"}, {"sv", "Swedish"},
                                        {"da", "Danish"}};

// "fr_CA" out of "fr_CA.UTF-8@euro"; English when nothing is set or the C locale is.
std::string LocaleName() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (!value || !*value) continue;
        const std::string name(value, std::strcspn(value, ".@"));
        return name == "C" || name == "POSIX" || name.find('/') != name.npos ? "en_US" : name;
    }
    return "en_US";
}

}  // namespace

std::vector<std::string> PreferredLanguages(const std::string& inRegion) {
    const std::string locale = LocaleName();
    const std::string language = locale.substr(0, locale.find('_'));
    std::vector<std::string> names = {locale, language};
    for (const auto& [code, oldName] : kOldNames) {
        if (language == code) names.push_back(oldName);
    }
    if (!inRegion.empty() && inRegion.find('/') == inRegion.npos) names.push_back(inRegion);
    names.insert(names.end(), {"en", "English"});
    return names;
}

}  // namespace carbon
