// Declares the commands that tell of volumes and files.
#include "Codes.h"
#include "CommandLine.h"

namespace cli {
namespace {

void AddFind(CLI::App& ioApp, CommandLine& ioLine) {
    const Help help = {"find",
                       "Find the files of a volume by creator, type and name",
                       "",
                       {"find --creator ttxt --type TEXT Disk", "find --name photo /"},
                       {kFailed, kBadSource}};
    CLI::App* command = AddCommand(ioApp, ioLine, help, [](CommandLine& ioCommandLine) {
        ioCommandLine.find.json = ioCommandLine.json;
        Find(ioCommandLine.find);
    });
    FindRequest& find = ioLine.find;
    command->add_option("VOLUME", find.volume, "A volume's name, or a path on it")->required();
    command->add_option("--creator", find.creator, "Creator, four characters")->type_name("XXXX");
    command->add_option("--type", find.type, "File type, four characters")->type_name("XXXX");
    command->add_option("--name", find.name, "What the name contains, in any case")
        ->type_name("TEXT");
}

void AddInfo(CLI::App& ioApp, CommandLine& ioLine) {
    const Help help = {"info",
                       "Tell type, creator, forks, dates and comment of a file",
                       "",
                       {"info ~/photos/one.tif"},
                       {kFailed, kBadSource}};
    AddCommand(ioApp, ioLine, help,
               [](CommandLine& ioCommandLine) { ShowInfo(ioCommandLine.file, ioCommandLine.json); })
        ->add_option("FILE", ioLine.file, "A file or folder")
        ->required();
}

void AddResources(CLI::App& ioApp, CommandLine& ioLine) {
    const Help help = {"resources",
                       "List a Mac file's resources, or show one",
                       "",
                       {"resources FILE", "resources FILE --type 'STR ' --id 128",
                        "resources FILE --type PICT --id 1 --raw > picture"},
                       {kFailed, kBadSource}};
    CLI::App* command = AddCommand(ioApp, ioLine, help, [](CommandLine& ioCommandLine) {
        ioCommandLine.resources.json = ioCommandLine.json;
        ShowResources(ioCommandLine.resources);
    });
    ResourcesRequest& request = ioLine.resources;
    command->add_option("FILE", request.file, "A file with a resource fork, or a .rsrc file")
        ->required();
    CLI::Option* type = command->add_option_function<std::string>(
        "--type", [&request](const std::string& inText) { request.type = CodeNamed(inText); },
        "Only resources of this type");
    type->type_name("TYPE")->check([](const std::string& inText) {
        return IsCode(inText) ? std::string() : "a type has four characters";
    });
    command->add_option("--id", request.id, "The data of one resource")
        ->type_name("ID")
        ->needs(type);
    CLI::Option* raw = command->add_flag("--raw", request.raw, "Its bytes to standard output");
    command->add_option("--to", request.target, "Its bytes to a file")
        ->type_name("TARGET")
        ->needs("--id");
    raw->needs("--id");
}

}  // namespace

void AddFileCommands(CLI::App& ioApp, CommandLine& ioLine) {
    AddFind(ioApp, ioLine);
    AddInfo(ioApp, ioLine);
    AddResources(ioApp, ioLine);
    AddCommand(ioApp, ioLine,
               {"volumes",
                "List the volumes and what they can do",
                "",
                {"volumes", "volumes --json"},
                {kFailed}},
               [](CommandLine& ioCommandLine) { ShowVolumes(ioCommandLine.json); });
}

}  // namespace cli
