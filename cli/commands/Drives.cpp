// Owns `vantor drives`: where the recorder can write.
#include <cstdio>

#include "Commands.h"
#include "Json.h"
#include "Output.h"
#include "Recorder.h"
#include "Session.h"

namespace cli {
namespace {

struct Drive {
    std::string id, name;
    bool burner = false, chosen = false;
    SInt64 space = 0;
};

Drive DriveAt(SInt32 inPosition, const std::string& inChosen) {
    const Object object = {'Driv', inPosition};
    Drive drive;
    drive.id = GetText(object, 'ID  ');
    drive.name = GetText(object, 'pnam');
    drive.burner = GetCode(object, 'dKnd') == 'burn';
    drive.space = GetNumber(object, 'spac');
    drive.chosen = drive.id == inChosen;
    return drive;
}

Json AsJson(const Drive& inDrive) {
    return {{"id", inDrive.id},
            {"name", inDrive.name},
            {"kind", inDrive.burner ? "burner" : "image"},
            {"bytes_writable", inDrive.space},
            {"chosen", inDrive.chosen}};
}

}  // namespace

void ShowDrives(bool inJson) {
    Session session;
    const std::string chosen = GetText(kApplication, 'cDrv');
    const SInt32 count = CountElements('Driv');
    Json all = Json::array();
    for (SInt32 i = 1; i <= count; ++i) {
        const Drive drive = DriveAt(i, chosen);
        all.push_back(AsJson(drive));
        if (!inJson)
            std::printf("%c %-10s %-12s %s\n", drive.chosen ? '*' : ' ', Bytes(drive.space).c_str(),
                        drive.name.c_str(), drive.id.c_str());
    }
    if (inJson) PrintJson(all);
}

}  // namespace cli
