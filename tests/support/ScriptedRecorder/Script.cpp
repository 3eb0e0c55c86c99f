// Finding the line of a script that an event is about.
#include "support/ScriptedRecorder/Script.h"

#include <fstream>
#include <sstream>

ScriptLine LineFor(const std::string& inScriptPath, const std::string& inEvent) {
    std::ifstream script(inScriptPath);
    std::string line;
    while (std::getline(script, line)) {
        std::istringstream words(line);
        std::string word;
        words >> word;
        if (word != inEvent) continue;
        ScriptLine found{true, {}};
        while (words >> word) found.steps.push_back(word);
        return found;
    }
    return {};
}
