// Gives every command a help of the same shape.
#include "CommandLine.h"

#include <algorithm>

namespace cli {
namespace {

struct Ending {
    ExitStatus status;
    const char* meaning;
};

constexpr Ending kEndings[] = {
    {kSuccess, "done"},
    {kFailed, "failed or refused; the message says why"},
    {kBadUsage, "bad usage: the command line makes no sense"},
    {kNoRecorder, "no recorder that can be driven"},
    {kBadSource, "a file or volume cannot be read or placed"},
    {kNotVerified, "written, but not verified good"},
    {kInterrupted, "interrupted or cancelled"},
};

std::string FooterOf(const Help& inHelp) {
    std::string text = inHelp.more;
    if (!text.empty()) text += '\n';
    text += "Examples:\n";
    for (const char* example : inHelp.examples) text += std::string("  vantor ") + example + '\n';
    std::vector<ExitStatus> endings = inHelp.endings;
    endings.insert(endings.end(), {kSuccess, kBadUsage});
    return text + "\nExit status:\n" + EndingsText(endings);
}

}  // namespace

std::string EndingsText(const std::vector<ExitStatus>& inEndings) {
    std::string text;
    for (const auto& [status, meaning] : kEndings) {
        if (std::ranges::find(inEndings, status) == inEndings.end()) continue;
        const std::string number = std::to_string(status);
        text += std::string(5 - number.size(), ' ') + number + ' ' + meaning + '\n';
    }
    return text;
}

CLI::App* AddCommand(CLI::App& ioApp, CommandLine& ioLine, const Help& inHelp,
                     std::function<void(CommandLine&)> inRun) {
    CLI::App* command = ioApp.add_subcommand(inHelp.word, inHelp.sentence);
    command->add_flag("--json", ioLine.json, "Print JSON, one object a line");
    command->footer(FooterOf(inHelp));
    command->callback([&ioLine, inRun] { ioLine.run = [&ioLine, inRun] { inRun(ioLine); }; });
    return command;
}

}  // namespace cli
