// vantor: drives the recorder from the command line, and speaks to any other program. What the
// commands take is declared in the files CommandLine.h names; what they do is in commands/.
#include <cstdio>

#include "Codes.h"
#include "CommandLine.h"
#include "Failure.h"
#include "Interrupt.h"
#include "Json.h"
#include "NearNames.h"

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
    "  vantor dictionary Calverin                    the names and codes a program understands\n"
    "  vantor send Calverin eject                    any event to any program\n"
    "  vantor get \"status text\" of disc 1 Calverin   one property of an object\n"
    "  vantor set pnam of Disc 1 Fv8k '\"Photos\"'     the same, changed, by codes\n"
    "\n"
    "Exit status, of every command:\n";

void Declare(CLI::App& ioApp, CommandLine& ioLine) {
    ioApp.require_subcommand(1);
    ioApp.footer(kFooter + EndingsText({kSuccess, kFailed, kBadUsage, kNoRecorder, kBadSource,
                                        kNotVerified, kInterrupted}));
    AddRecorderCommands(ioApp, ioLine);
    AddFileCommands(ioApp, ioLine);
    AddMessageCommands(ioApp, ioLine);
    AddWatchCommands(ioApp, ioLine);
}

// The code ends the line.
std::string WithoutStop(std::string inSentence) {
    if (inSentence.ends_with('.')) inSentence.pop_back();
    return inSentence;
}

int Report(const Failure& inFailure, bool inJson) {
    if (inJson)
        PrintJson({{"event", "error"}, {"code", inFailure.Code()}, {"error", inFailure.what()}});
    else
        std::fprintf(stderr, "vantor: %s [%d]\n", WithoutStop(inFailure.what()).c_str(),
                     inFailure.Code());
    return inFailure.Exit();
}

std::string NoCommand(const CLI::App& inApp, const std::string& inWord) {
    if (inWord.empty() || inWord.front() == '-') return "a command is missing";
    std::vector<std::string> commands;
    for (const CLI::App* command : inApp.get_subcommands({}))
        commands.push_back(command->get_name());
    const auto near = NearNames(inWord, commands);
    return "there is no command '" + Shown(inWord) + "'" +
           (near.empty() ? "" : ", but '" + near.front() + "'");
}

// One line, as for every other error. Asking for help is none.
int ReportUsage(const CLI::App& inApp, const CLI::ParseError& inError,
                const std::string& inFirstWord) {
    if (inError.get_exit_code() == 0) return inApp.exit(inError);
    const auto chosen = inApp.get_subcommands();
    const std::string command = chosen.empty() ? "" : ' ' + chosen.front()->get_name();
    const std::string why = chosen.empty() ? NoCommand(inApp, inFirstWord) : Shown(inError.what());
    std::fprintf(stderr, "vantor%s: %s; vantor%s --help tells more\n", command.c_str(), why.c_str(),
                 command.c_str());
    return kBadUsage;
}

int Main(int inCount, char** inWords) {
    CLI::App app("Burns files to discs and disc images, and speaks to programs by Apple Events.",
                 "vantor");
    CommandLine line;
    Declare(app, line);
    try {
        app.parse(inCount, inWords);
        WatchForInterrupt();
        line.run();
    } catch (const CLI::ParseError& error) {
        return ReportUsage(app, error, inCount > 1 ? inWords[1] : "");
    } catch (const Failure& failure) {
        return Report(failure, line.json);
    } catch (const std::exception& error) {
        return Report(Failure(error.what(), -11000), line.json);
    }
    return kSuccess;
}

}  // namespace
}  // namespace cli

int main(int inCount, char** inWords) {
    return cli::Main(inCount, inWords);
}
