// Declares the commands that watch programs and the events between them.
#include "Codes.h"
#include "CommandLine.h"

namespace cli {
namespace {

void AddCode(CLI::App* ioCommand, const char* inWord, const char* inHelp,
             std::optional<OSType>& outCode) {
    ioCommand
        ->add_option_function<std::string>(
            inWord, [&outCode](const std::string& inText) { outCode = CodeNamed(inText); }, inHelp)
        ->type_name("XXXX")
        ->check([](const std::string& inText) {
            return IsCode(inText) ? std::string() : "a code has four characters";
        });
}

void AddMonitor(CLI::App& ioApp, CommandLine& ioLine) {
    const Help help = {
        "monitor",
        "Show the events between programs as they happen",
        "Ctrl-C ends it. Names of the target's dictionary stand <behind the codes>.\n"
        "PROCESS is a PID, a number as vantor processes tells it, a path, a\n"
        "signature or a name.\n",
        {"monitor", "monitor --process Calverin --name get",
         "monitor --class core --id setd --json", "monitor --capture events"},
        {kFailed, kBadSource}};
    CLI::App* command = AddCommand(ioApp, ioLine, help, [](CommandLine& ioCommandLine) {
        ioCommandLine.monitor.json = ioCommandLine.json;
        MonitorEvents(ioCommandLine.monitor);
    });
    MonitorRequest& request = ioLine.monitor;
    AddCode(command, "--class", "Only events of this class, four characters", request.eventClass);
    AddCode(command, "--id", "Only events of this ID, four characters", request.eventID);
    command->add_option("--name", request.name, "Only events that the target's dictionary calls so")
        ->type_name("NAME");
    command->add_option("--process", request.process, "Only events from or to this program")
        ->type_name("PROCESS");
    command
        ->add_option("--capture", request.capture,
                     "Keep what is shown in this file, for vantor replay")
        ->type_name("FILE");
    command->add_flag("--no-names", request.isPlain, "Show no names behind the codes");
}

void AddReplay(CLI::App& ioApp, CommandLine& ioLine) {
    const Help help = {"replay",
                       "Send captured events once more; tell what is answered otherwise",
                       "",
                       {"replay events", "replay events --to Calverin"},
                       {kFailed, kBadSource, kInterrupted}};
    CLI::App* command = AddCommand(ioApp, ioLine, help, [](CommandLine& ioCommandLine) {
        ioCommandLine.replay.json = ioCommandLine.json;
        ReplayEvents(ioCommandLine.replay);
    });
    command->add_option("FILE", ioLine.replay.file, "What vantor monitor --capture has made")
        ->required();
    command
        ->add_option("--to", ioLine.replay.target,
                     "Send them to this program: PID, number, path, signature or name")
        ->type_name("TARGET");
}

void AddProcesses(CLI::App& ioApp, CommandLine& ioLine) {
    const Help help = {"processes",
                       "List the programs that exchange events",
                       "",
                       {"processes", "processes --watch"},
                       {kFailed}};
    AddCommand(ioApp, ioLine, help, [](CommandLine& ioCommandLine) {
        const auto show = ioCommandLine.watches ? WatchProcesses : ShowProcesses;
        show(ioCommandLine.json);
    })->add_flag("--watch", ioLine.watches, "And those that come and go, until Ctrl-C");
}

}  // namespace

void AddWatchCommands(CLI::App& ioApp, CommandLine& ioLine) {
    AddProcesses(ioApp, ioLine);
    AddMonitor(ioApp, ioLine);
    AddReplay(ioApp, ioLine);
}

}  // namespace cli
