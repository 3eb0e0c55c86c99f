// Compares names as people mistype them.
#include "NearNames.h"

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <set>

namespace cli {
namespace {

constexpr size_t kMostCompared = 64, kMostShown = 3;

std::string Folded(const std::string& inName) {
    std::string name = inName.substr(0, kMostCompared);
    std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::tolower(c); });
    return name;
}

// How many characters have to be put in, taken out or exchanged.
size_t Distance(const std::string& inOne, const std::string& inOther) {
    std::vector<size_t> row(inOther.size() + 1);
    for (size_t j = 0; j < row.size(); ++j) row[j] = j;
    for (size_t i = 1; i <= inOne.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j < row.size(); ++j) {
            const size_t exchanged = diagonal + (inOne[i - 1] == inOther[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, exchanged});
        }
    }
    return row.back();
}

}  // namespace

bool IsSameName(const std::string& inOne, const std::string& inOther) {
    return strcasecmp(inOne.c_str(), inOther.c_str()) == 0;
}

std::vector<std::string> NearNames(const std::string& inName,
                                   const std::vector<std::string>& inNames) {
    const std::string wanted = Folded(inName);
    const size_t most = std::max<size_t>(2, wanted.size() / 3);
    std::set<std::pair<size_t, std::string>> near;
    for (const auto& name : inNames) {
        const std::string folded = Folded(name);
        const bool isPart = wanted.size() > 2 && folded.find(wanted) != folded.npos;
        const size_t distance = Distance(wanted, folded);
        if (isPart || (distance <= most && distance < folded.size()))
            near.insert({isPart ? 1 : distance, name});
    }
    std::vector<std::string> names;
    for (const auto& [distance, name] : near)
        if (names.size() < kMostShown) names.push_back(name);
    return names;
}

}  // namespace cli
