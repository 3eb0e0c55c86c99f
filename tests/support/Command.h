// Runs another program and waits for its end, with a deadline that no test can hang beyond.
#pragma once

#include <chrono>
#include <string>
#include <vector>

struct CommandResult {
    int exitCode = -1;  // 128 + signal when a signal ended it; -1 when the deadline did
    std::string output;
    std::string errors;
};

struct CommandOptions {
    std::chrono::seconds deadline{60};
    std::string folder;                    // working directory; empty: the caller's
    std::vector<std::string> environment;  // "NAME=value", added to the caller's
    int interruptAfterMs = -1;             // sends SIGINT after so many milliseconds
    std::string interruptOnOutput;         // sends SIGINT when this text has been printed
};

// The first word is looked up in PATH unless it holds a slash. Standard input is empty.
CommandResult RunCommand(const std::vector<std::string>& inWords,
                         const CommandOptions& inOptions = {});

// Where the build puts its programs: the folder of the running test.
std::string ProgramFolder();

// Whether a tool of the machine can be found; tests that need one say so when they skip.
bool HasTool(const std::string& inName);
