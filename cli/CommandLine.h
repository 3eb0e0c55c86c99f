// The words of the command line: what each command takes, and what its help says.
#pragma once

#include <CLI/CLI.hpp>

#include <functional>
#include <string>
#include <vector>

#include "Failure.h"
#include "commands/Commands.h"

namespace cli {

// What has been read from the command line, and what is to be done with it.
struct CommandLine {
    BurnRequest burn;
    FindRequest find;
    ResourcesRequest resources;
    MonitorRequest monitor;
    ReplayRequest replay;
    SendRequest send;
    PropertyRequest property;
    std::string mode, onOff, file;
    bool watches = false;
    bool json = false;
    std::function<void()> run;
};

// Everything that a command's help tells beside its options.
struct Help {
    const char* word;
    const char* sentence;               // what it does
    const char* more;                   // lines about its words; may be empty
    std::vector<const char*> examples;  // without "vantor"
    std::vector<ExitStatus> endings;    // beside success and bad usage, which all have
};

CLI::App* AddCommand(CLI::App& ioApp, CommandLine& ioLine, const Help& inHelp,
                     std::function<void(CommandLine&)> inRun);

// "  3 no recorder that can be driven" for each, or all.
std::string EndingsText(const std::vector<ExitStatus>& inEndings);

void AddRecorderCommands(CLI::App& ioApp, CommandLine& ioLine);
void AddFileCommands(CLI::App& ioApp, CommandLine& ioLine);
void AddMessageCommands(CLI::App& ioApp, CommandLine& ioLine);
void AddWatchCommands(CLI::App& ioApp, CommandLine& ioLine);

}  // namespace cli
