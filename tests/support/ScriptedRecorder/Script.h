// What the scripted recorder is told to answer.
#pragma once

#include <string>
#include <vector>

// One line of the script for each kind of event, read anew for every event:
//     core/getd/sCod delay 200 value long 00000002
// First class and ID, for property events the property too; then the steps:
//     value TYPE HEX   this is the direct object of the reply
//     errn TYPE HEX    this is the reply's error number
//     error NUMBER     the handler fails with it
//     delay MS         waits first
//     silent           never answers
//     die              ends at once, as by kill -9
//     empty            answers without a result
// An event without a line is answered as the recording application would when idle.
struct ScriptLine {
    bool found = false;
    std::vector<std::string> steps;
};

ScriptLine LineFor(const std::string& inScriptPath, const std::string& inEvent);
