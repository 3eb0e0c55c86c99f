// Declares the commands that speak to any program.
#include "CommandLine.h"

namespace cli {
namespace {

constexpr const char* kSendWords =
    "EVENT is CLASS ID, two codes, or the event's name in the program's dictionary.\n"
    "PARAMETERS are keyword:value, separated by commas; ~ before a keyword makes it optional, &\n"
    "an attribute. Values: 5, \"text\", 'code', type(pnam), shor(3), doub(\"2.5\"), alis($0A0B$),\n"
    "[1, 2], { key: 1 }, obj { want:type(prop), from:null(), form:prop, seld:type(pnam) }.\n"
    "Keywords and codes with a minus sign, space or punctuation are quoted: '----'.\n"
    "TARGET is a PID, a number as vantor processes tells it, a path, a signature or a name.\n"
    "\n"
    "Names: wherever a code may stand, so may a name of the program's dictionary, in any case. A\n"
    "word means, in this order: a code that the dictionary has there, a name that it has, any\n"
    "other code of up to four characters. Quotes force a code ('name'), angle brackets a name\n"
    "(<name>, <status code>). The reply has names in the same brackets behind its codes, and can\n"
    "be sent again as it is.\n";

constexpr const char* kPropertyWords =
    "PROPERTY is a code or a name. OBJECT is CLASS SELECTOR, where CLASS is a code or a name, and\n"
    "SELECTOR is a number (negative from the end), first, last, middle, any, all, id=NUMBER or a\n"
    "name; or the code or name of another property. More of them follow after `of`; without one\n"
    "the program itself is meant.\n"
    "TARGET is a PID, a number as vantor processes tells it, a path, a signature or a name.\n"
    "set takes a VALUE too: 5, \"text\", true, 'code', [1, 2]; vantor send --help tells more.\n"
    "\n"
    "Names: those of the program's dictionary, in any case. A word means, in this order: a code\n"
    "that the dictionary has there, a name that it has, any other code of up to four characters.\n"
    "Quotes force a code ('name'), angle brackets a name (<name>).\n";

constexpr const char* kApplication = "PID, number, path, signature or name";

const std::vector<ExitStatus> kSends = {kFailed, kInterrupted};

void AddPlain(CLI::App* ioCommand, bool& outPlain) {
    ioCommand->add_flag("--no-names", outPlain, "Show no names behind the codes");
}

void AddSend(CLI::App& ioApp, CommandLine& ioLine) {
    const Help help = {"send",
                       "Send any event to a program, show the reply",
                       kSendWords,
                       {"send Fv8k Fv8k Ejct", "send Calverin eject",
                        "send Calverin core cnte \"kocl:type(Driv)\" --json",
                        "send Calverin count \"'----': null(), each: type(drive)\"",
                        "send Calverin write \"ejecting: false(), asynchronously: true()\""},
                       kSends};
    CLI::App* command = AddCommand(ioApp, ioLine, help, [](CommandLine& ioCommandLine) {
        ioCommandLine.send.json = ioCommandLine.json;
        SendEvent(ioCommandLine.send);
    });
    SendRequest& send = ioLine.send;
    command->add_option("TARGET", send.target, kApplication)->required();
    command->add_option("EVENT", send.event, "CLASS ID or NAME, then PARAMETERS if it has any")
        ->required()
        ->type_name("");
    command->add_flag_callback(
        "--no-reply", [&send] { send.awaitsReply = false; }, "Do not wait for an answer");
    command
        ->add_option("--timeout", send.seconds,
                     "Wait so many seconds for the answer (60); 0: for ever")
        ->type_name("SECONDS")
        ->check([](const std::string& inText) {
            return CLI::Range(0.0, 1e6)(inText).empty() ? "" : "these are no seconds: " + inText;
        });
    AddPlain(command, send.isPlain);
}

void AddProperty(CLI::App& ioApp, CommandLine& ioLine, const Help& inHelp, const char* inWords,
                 void (*inRun)(const PropertyRequest&)) {
    CLI::App* command = AddCommand(ioApp, ioLine, inHelp, [inRun](CommandLine& ioCommandLine) {
        ioCommandLine.property.json = ioCommandLine.json;
        inRun(ioCommandLine.property);
    });
    command->add_option("WORDS", ioLine.property.words, inWords)->required()->type_name("");
    AddPlain(command, ioLine.property.isPlain);
}

void AddProgram(CLI::App& ioApp, CommandLine& ioLine, const Help& inHelp, const char* inWords,
                void (*inRun)(const std::string&, bool)) {
    AddCommand(
        ioApp, ioLine, inHelp,
        [inRun](CommandLine& ioCommandLine) { inRun(ioCommandLine.file, ioCommandLine.json); })
        ->add_option("APP", ioLine.file, inWords)
        ->required();
}

}  // namespace

void AddMessageCommands(CLI::App& ioApp, CommandLine& ioLine) {
    AddSend(ioApp, ioLine);
    AddProperty(ioApp, ioLine,
                {"get",
                 "Ask a program for a property of an object",
                 kPropertyWords,
                 {"get vers Fv8k", "get \"status code\" of disc 1 Calverin",
                  "get pnam of Driv last Calverin --json"},
                 kSends},
                "PROPERTY [of OBJECT]... TARGET", GetProperty);
    AddProperty(ioApp, ioLine,
                {"set",
                 "Change a property of an object of a program",
                 kPropertyWords,
                 {"set pnam of Disc 1 Fv8k '\"Photos\"'", "set \"simulation mode\" Calverin true"},
                 kSends},
                "PROPERTY [of OBJECT]... TARGET VALUE", SetProperty);
    AddProgram(ioApp, ioLine,
               {"launch",
                "Start an application, if it does not run yet",
                "",
                {"launch Calverin", "launch ~/Applications/Calverin.app"},
                {kFailed, kBadSource}},
               "Path, signature or name", Launch);
    AddProgram(ioApp, ioLine,
               {"quit", "Ask a program to quit", "", {"quit Calverin", "quit 4711"}, kSends},
               kApplication, Quit);
    AddProgram(ioApp, ioLine,
               {"dictionary",
                "Show the events and objects an application knows",
                "They come from its 'aete' resources or, where it has none, from the scripting\n"
                "definition that its Info.plist names. A .sdef file may be given too.\n",
                {"dictionary Calverin", "dictionary Editor.app --json"},
                {kFailed, kBadSource}},
               kApplication, ShowDictionary);
}

}  // namespace cli
