// Declares the commands that drive the recorder.
#include "CommandLine.h"

namespace cli {
namespace {

const std::vector<ExitStatus> kAsksRecorder = {kFailed, kNoRecorder, kInterrupted};

void AddBurn(CLI::App& ioApp, CommandLine& ioLine) {
    const Help help = {"burn",
                       "Write files and folders to a disc or an image",
                       "The first Ctrl-C cancels; an unfinished image is never left behind.\n",
                       {"burn ~/photos --to photos.iso", "burn a.txt b.txt --to /dev/sr0",
                        "burn ~/music --kind hybrid --simulate"},
                       {kFailed, kNoRecorder, kBadSource, kNotVerified, kInterrupted}};
    CLI::App* command = AddCommand(ioApp, ioLine, help, [](CommandLine& ioCommandLine) {
        ioCommandLine.burn.json = ioCommandLine.json;
        Burn(ioCommandLine.burn);
    });
    BurnRequest& burn = ioLine.burn;
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
}

void AddSimple(CLI::App& ioApp, CommandLine& ioLine, const Help& inHelp, void (*inRun)(bool)) {
    AddCommand(ioApp, ioLine, inHelp,
               [inRun](CommandLine& ioCommandLine) { inRun(ioCommandLine.json); });
}

void SetMode(CommandLine& ioLine) {
    const std::optional<bool> on =
        ioLine.onOff.empty() ? std::nullopt : std::optional(ioLine.onOff == "on");
    ShowOrSetMode(ioLine.mode == "server" ? Mode::kServer : Mode::kSimulation, on, ioLine.json);
}

void AddMode(CLI::App& ioApp, CommandLine& ioLine) {
    const Help help = {"mode",
                       "Tell or set a mode of the recorder",
                       "",
                       {"mode simulation", "mode simulation on"},
                       kAsksRecorder};
    CLI::App* command = AddCommand(ioApp, ioLine, help, SetMode);
    command->add_option("MODE", ioLine.mode, "server or simulation")
        ->required()
        ->check(CLI::IsMember({"server", "simulation"}));
    command->add_option("STATE", ioLine.onOff, "on or off; left out: only tell")
        ->check(CLI::IsMember({"on", "off"}));
}

}  // namespace

void AddRecorderCommands(CLI::App& ioApp, CommandLine& ioLine) {
    AddBurn(ioApp, ioLine);
    AddSimple(ioApp, ioLine,
              {"status",
               "Tell what the recorder is doing, without starting it",
               "",
               {"status", "status --json"},
               {kFailed, kInterrupted}},
              ShowStatus);
    AddSimple(ioApp, ioLine,
              {"drives", "List where discs can be written", "", {"drives"}, kAsksRecorder},
              ShowDrives);
    AddSimple(ioApp, ioLine,
              {"media", "Tell which disc is in the chosen drive", "", {"media"}, kAsksRecorder},
              ShowMedia);
    AddSimple(ioApp, ioLine, {"blank", "Ask for a blank disc", "", {"blank"}, kAsksRecorder},
              RequestBlank);
    AddSimple(ioApp, ioLine, {"eject", "Eject the disc", "", {"eject"}, kAsksRecorder}, Eject);
    AddMode(ioApp, ioLine);
}

}  // namespace cli
