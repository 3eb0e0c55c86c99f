// vantor: drives the recorder from the command line. Declares the words; what they do is in
// commands/.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <functional>

#include "Failure.h"
#include "Interrupt.h"
#include "Json.h"
#include "commands/Commands.h"

namespace cli {
namespace {

constexpr const char* kFooter =
    "Examples:\n"
    "  vantor burn ~/photos --to photos.iso          folder to a verified disc image\n"
    "  vantor burn a.txt b.txt --to /dev/sr0         files to a disc in a burner\n"
    "  vantor burn ~/music --kind hybrid --simulate  try everything, leave nothing\n"
    "  vantor drives                                 where discs can be written\n"
    "  vantor status --json                          what the recorder is doing\n"
    "  vantor find --creator ttxt --type TEXT Disk   files of a volume by creator and type\n"
    "  vantor info ~/photos/one.tif                  what a Mac would know of the file\n"
    "  vantor resources FILE --type 'STR ' --id 128  one resource of a Mac file\n"
    "  vantor monitor --capture events               every event between programs, kept in a file\n"
    "  vantor replay events --to Calverin            the same requests once more\n"
    "  vantor send Fv8k core cnte \"kocl:type(Driv)\"  any event to any program\n"
    "  vantor get sTxt of Disc 1 Fv8k                one property of an object\n"
    "  vantor set pnam of Disc 1 Fv8k '\"Photos\"'     the same, changed\n"
    "\n"
    "Exit status:\n"
    "  0 done            3 no recorder that can be driven\n"
    "  1 failed          4 a source cannot be read or placed\n"
    "  2 bad usage       5 written, but not verified good\n"
    "                  130 interrupted; a burn is cancelled and leaves no file\n";

struct CommandLine {
    BurnRequest burn;
    FindRequest find;
    ResourcesRequest resources;
    MonitorRequest monitor;
    SendRequest send;
    std::vector<std::string> words;
    ReplayRequest replay;
    std::string mode, onOff, file;
    bool watches = false;
    bool json = false;
    std::function<void()> run;
};

void AddJsonFlag(CLI::App* ioCommand, bool& outJson) {
    ioCommand->add_flag("--json", outJson, "Print JSON, one object a line");
}

void AddBurn(CLI::App& ioApp, CommandLine& ioLine) {
    BurnRequest& burn = ioLine.burn;
    CLI::App* command =
        ioApp.add_subcommand("burn", "Write files and folders to a disc or an image");
    command->add_option("FILE", burn.files, "Files and folders; a folder is written with its name")
        ->required();
    command->add_option("--to", burn.target, "Image file to make, or a device such as /dev/sr0")
        ->type_name("IMAGE|DEVICE");
    command->add_option("--name", burn.volumeName, "Name of the volume")->type_name("VOLUME");
    command
        ->add_option("--kind", burn.kind,
                     "data (ISO 9660, Rock Ridge, Joliet) or hybrid (and HFS+)")
        ->check(CLI::IsMember({"data", "hybrid"}))
        ->type_name("data|hybrid");
    command->add_flag("--simulate", burn.simulate, "Do everything but write");
    command->add_flag("--verify,!--no-verify", burn.verify, "Read the disc back (default)");
    command->add_flag("--eject,!--no-eject", burn.eject, "Eject afterwards (default for a device)");
    command->add_flag("--replace", burn.replace, "Overwrite an existing image file");
    AddJsonFlag(command, burn.json);
    command->callback([&ioLine] { ioLine.run = [&ioLine] { Burn(ioLine.burn); }; });
}

void AddSimple(CLI::App& ioApp, CommandLine& ioLine, const char* inWord, const char* inHelp,
               void (*inRun)(bool)) {
    CLI::App* command = ioApp.add_subcommand(inWord, inHelp);
    AddJsonFlag(command, ioLine.json);
    command->callback([&ioLine, inRun] { ioLine.run = [&ioLine, inRun] { inRun(ioLine.json); }; });
}

// Four characters; fewer are filled up with spaces.
OSType CodeOf(const std::string& inText) {
    OSType code = 0;
    for (size_t i = 0; i < 4; ++i)
        code = code << 8 | static_cast<unsigned char>(i < inText.size() ? inText[i] : ' ');
    return code;
}

void AddResources(CLI::App& ioApp, CommandLine& ioLine) {
    ResourcesRequest& request = ioLine.resources;
    CLI::App* command =
        ioApp.add_subcommand("resources", "List a Mac file's resources, or show one");
    command->add_option("FILE", request.file, "A file with a resource fork, or a .rsrc file")
        ->required();
    CLI::Option* type = command->add_option_function<std::string>(
        "--type", [&request](const std::string& inText) { request.type = CodeOf(inText); },
        "Only resources of this type");
    type->type_name("TYPE")->check([](const std::string& inText) {
        return inText.empty() || inText.size() > 4 ? "a type has four characters" : std::string();
    });
    command->add_option("--id", request.id, "The data of one resource")
        ->type_name("ID")
        ->needs(type);
    CLI::Option* raw = command->add_flag("--raw", request.raw, "Its bytes to standard output");
    command->add_option("--to", request.target, "Its bytes to a file")
        ->type_name("TARGET")
        ->needs("--id");
    raw->needs("--id");
    AddJsonFlag(command, request.json);
    command->callback([&ioLine] { ioLine.run = [&ioLine] { ShowResources(ioLine.resources); }; });
}

void AddReplay(CLI::App& ioApp, CommandLine& ioLine) {
    CLI::App* command = ioApp.add_subcommand(
        "replay", "Send captured events once more; tell what is answered otherwise");
    command->add_option("FILE", ioLine.replay.file, "What vantor monitor --capture has made")
        ->required();
    command
        ->add_option("--to", ioLine.replay.target,
                     "Send them to this program, by its name, creator or number")
        ->type_name("TARGET");
    AddJsonFlag(command, ioLine.json);
    command->callback([&ioLine] {
        ioLine.replay.json = ioLine.json;
        ioLine.run = [&ioLine] { ReplayEvents(ioLine.replay); };
    });
}

CLI::Option* AddCode(CLI::App* ioCommand, const char* inWord, const char* inHelp,
                     std::optional<OSType>& outCode) {
    return ioCommand
        ->add_option_function<std::string>(
            inWord, [&outCode](const std::string& inText) { outCode = CodeOf(inText); }, inHelp)
        ->type_name("XXXX")
        ->check([](const std::string& inText) {
            return inText.empty() || inText.size() > 4 ? "a code has four characters"
                                                       : std::string();
        });
}

void AddMonitor(CLI::App& ioApp, CommandLine& ioLine) {
    MonitorRequest& request = ioLine.monitor;
    CLI::App* command =
        ioApp.add_subcommand("monitor", "Show the events between programs as they happen");
    AddCode(command, "--class", "Only events of this class, four characters", request.eventClass);
    AddCode(command, "--id", "Only events of this ID, four characters", request.eventID);
    command
        ->add_option("--process", request.process,
                     "Only events from or to this program, by its name or number")
        ->type_name("PROCESS");
    command
        ->add_option("--capture", request.capture,
                     "Keep what is shown in this file, for vantor replay")
        ->type_name("FILE");
    AddJsonFlag(command, ioLine.json);
    command->callback([&ioLine] {
        ioLine.monitor.json = ioLine.json;
        ioLine.run = [&ioLine] { MonitorEvents(ioLine.monitor); };
    });
}

void AddMode(CLI::App& ioApp, CommandLine& ioLine) {
    CLI::App* command = ioApp.add_subcommand("mode", "Tell or set a mode of the recorder");
    command->add_option("MODE", ioLine.mode, "server or simulation")
        ->required()
        ->check(CLI::IsMember({"server", "simulation"}));
    command->add_option("STATE", ioLine.onOff, "on or off; left out: only tell")
        ->check(CLI::IsMember({"on", "off"}));
    AddJsonFlag(command, ioLine.json);
    command->callback([&ioLine] {
        ioLine.run = [&ioLine] {
            const std::optional<bool> on =
                ioLine.onOff.empty() ? std::nullopt : std::optional(ioLine.onOff == "on");
            ShowOrSetMode(ioLine.mode == "server" ? Mode::kServer : Mode::kSimulation, on,
                          ioLine.json);
        };
    });
}

void AddFind(CLI::App& ioApp, CommandLine& ioLine) {
    FindRequest& find = ioLine.find;
    CLI::App* command =
        ioApp.add_subcommand("find", "Find the files of a volume by creator, type and name");
    command->add_option("VOLUME", find.volume, "A volume's name, or a path on it")->required();
    command->add_option("--creator", find.creator, "Creator, four characters")->type_name("XXXX");
    command->add_option("--type", find.type, "File type, four characters")->type_name("XXXX");
    command->add_option("--name", find.name, "What the name contains, in any case")
        ->type_name("TEXT");
    AddJsonFlag(command, ioLine.json);
    command->callback([&ioLine] {
        ioLine.find.json = ioLine.json;
        ioLine.run = [&ioLine] { Find(ioLine.find); };
    });
}

void AddInfo(CLI::App& ioApp, CommandLine& ioLine) {
    CLI::App* command =
        ioApp.add_subcommand("info", "Tell type, creator, forks, dates and comment of a file");
    command->add_option("FILE", ioLine.file, "A file or folder")->required();
    AddJsonFlag(command, ioLine.json);
    command->callback(
        [&ioLine] { ioLine.run = [&ioLine] { ShowInfo(ioLine.file, ioLine.json); }; });
}

void AddProcesses(CLI::App& ioApp, CommandLine& ioLine) {
    CLI::App* command = ioApp.add_subcommand("processes", "List the programs that exchange events");
    command->add_flag("--watch", ioLine.watches, "And those that come and go, until Ctrl-C");
    AddJsonFlag(command, ioLine.json);
    command->callback([&ioLine] {
        ioLine.run = [&ioLine] {
            ioLine.watches ? WatchProcesses(ioLine.json) : ShowProcesses(ioLine.json);
        };
    });
}

constexpr const char* kSendFooter =
    "PARAMETERS are keyword:value, separated by commas; ~ before a keyword makes it optional, & "
    "an\n"
    "attribute. Values: 5, \"text\", 'code', type(pnam), shor(3), doub(\"2.5\"), alis($0A0B$),\n"
    "[1, 2], { key: 1 }, obj { want:type(prop), from:null(), form:prop, seld:type(pnam) }.\n"
    "Keywords and codes with a minus sign, space or punctuation are quoted: '----'.\n"
    "TARGET is a PID, a path, a signature or a name.\n"
    "\n"
    "Examples:\n"
    "  vantor send Fv8k Fv8k Ejct\n"
    "  vantor send Calverin core cnte \"kocl:type(Driv)\" --json\n"
    "\n"
    "Exit status: 0 answered, 1 not sent or answered with an error, 2 bad usage\n";

void AddSend(CLI::App& ioApp, CommandLine& ioLine) {
    SendRequest& send = ioLine.send;
    CLI::App* command = ioApp.add_subcommand("send", "Send any event to a program, show the reply");
    command->add_option("TARGET", send.target, "PID, path, signature or name")->required();
    command->add_option("CLASS", send.eventClass, "Class of the event, a code")->required();
    command->add_option("ID", send.eventID, "ID of the event, a code")->required();
    command->add_option("PARAMETERS", send.parameters, "keyword:value, separated by commas");
    command->add_flag("!--no-reply", send.awaitsReply, "Do not wait for an answer");
    command->add_option("--timeout", send.seconds, "Wait so long; 0: for ever")
        ->type_name("S")
        ->check(CLI::Range(0.0, 1e6))
        ->capture_default_str();
    AddJsonFlag(command, send.json);
    command->footer(kSendFooter);
    command->callback([&ioLine] { ioLine.run = [&ioLine] { SendEvent(ioLine.send); }; });
}

constexpr const char* kPropertyFooter =
    "PROPERTY is a code. OBJECT is CLASS SELECTOR, where SELECTOR is a number (negative from the\n"
    "end), first, last, middle, any, all, id=NUMBER or a name; or the code of another property.\n"
    "More of them follow after `of`; without one the program itself is meant.\n"
    "TARGET is a PID, a path, a signature or a name. VALUE is 5, \"text\", true, 'code', [1, 2] "
    "...\n"
    "\n"
    "Examples:\n"
    "  vantor get vers Fv8k\n"
    "  vantor get pnam of Driv last Calverin --json\n"
    "  vantor set pnam of Disc 1 Fv8k '\"Photos\"'\n";

void AddProperty(CLI::App& ioApp, CommandLine& ioLine, const char* inWord, const char* inHelp,
                 const char* inWords, void (*inRun)(std::vector<std::string>, bool)) {
    CLI::App* command = ioApp.add_subcommand(inWord, inHelp);
    command->add_option("WORDS", ioLine.words, inWords)->required();
    AddJsonFlag(command, ioLine.json);
    command->footer(kPropertyFooter);
    command->callback(
        [&ioLine, inRun] { ioLine.run = [&ioLine, inRun] { inRun(ioLine.words, ioLine.json); }; });
}

void AddProgram(CLI::App& ioApp, CommandLine& ioLine, const char* inWord, const char* inHelp,
                void (*inRun)(const std::string&, bool)) {
    CLI::App* command = ioApp.add_subcommand(inWord, inHelp);
    command->add_option("APP", ioLine.file, "Path, signature or name")->required();
    AddJsonFlag(command, ioLine.json);
    command->callback(
        [&ioLine, inRun] { ioLine.run = [&ioLine, inRun] { inRun(ioLine.file, ioLine.json); }; });
}

void AddMessages(CLI::App& ioApp, CommandLine& ioLine) {
    AddSend(ioApp, ioLine);
    AddProperty(ioApp, ioLine, "get", "Ask a program for a property of an object",
                "PROPERTY [of OBJECT]... TARGET", GetProperty);
    AddProperty(ioApp, ioLine, "set", "Change a property of an object of a program",
                "PROPERTY [of OBJECT]... TARGET VALUE", SetProperty);
    AddProgram(ioApp, ioLine, "launch", "Start an application", Launch);
    AddProgram(ioApp, ioLine, "quit", "Ask a program to quit", Quit);
}

void AddDictionary(CLI::App& ioApp, CommandLine& ioLine) {
    CLI::App* command =
        ioApp.add_subcommand("dictionary", "Show the events and objects an application knows");
    command->add_option("APP", ioLine.file, "Its name, signature, PID or path")->required();
    AddJsonFlag(command, ioLine.json);
    command->callback(
        [&ioLine] { ioLine.run = [&ioLine] { ShowDictionary(ioLine.file, ioLine.json); }; });
}

void Declare(CLI::App& ioApp, CommandLine& ioLine) {
    ioApp.require_subcommand(1);
    ioApp.footer(kFooter);
    AddBurn(ioApp, ioLine);
    AddSimple(ioApp, ioLine, "status", "Tell what the recorder is doing", ShowStatus);
    AddSimple(ioApp, ioLine, "media", "Tell which disc is in the chosen drive", ShowMedia);
    AddSimple(ioApp, ioLine, "blank", "Ask for a blank disc", RequestBlank);
    AddSimple(ioApp, ioLine, "eject", "Eject the disc", Eject);
    AddMode(ioApp, ioLine);
    AddMonitor(ioApp, ioLine);
    AddReplay(ioApp, ioLine);
    AddFind(ioApp, ioLine);
    AddInfo(ioApp, ioLine);
    AddDictionary(ioApp, ioLine);
    AddSimple(ioApp, ioLine, "drives", "List where discs can be written", ShowDrives);
    AddProcesses(ioApp, ioLine);
    AddResources(ioApp, ioLine);
    AddMessages(ioApp, ioLine);
    AddSimple(ioApp, ioLine, "volumes", "List the volumes and what they can do", ShowVolumes);
}

int Report(const Failure& inFailure, bool inJson) {
    if (inJson)
        PrintJson({{"event", "error"}, {"code", inFailure.Code()}, {"error", inFailure.what()}});
    else
        std::fprintf(stderr, "vantor: %s [%d]\n", inFailure.what(), inFailure.Code());
    return inFailure.Exit();
}

int Main(int inCount, char** inWords) {
    CLI::App app("Burns files to discs and disc images through the recording application.",
                 "vantor");
    CommandLine line;
    Declare(app, line);
    try {
        app.parse(inCount, inWords);
        WatchForInterrupt();
        line.run();
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kSuccess : kBadUsage;
    } catch (const Failure& failure) {
        return Report(failure,
                      line.json || line.burn.json || line.resources.json || line.send.json);
    } catch (const std::exception& error) {
        return Report(Failure(error.what(), -11000),
                      line.json || line.burn.json || line.resources.json || line.send.json);
    }
    return kSuccess;
}

}  // namespace
}  // namespace cli

int main(int inCount, char** inWords) {
    return cli::Main(inCount, inWords);
}
