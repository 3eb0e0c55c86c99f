// Owns `vantor volumes`: the mounted volumes, their sizes and what they can do.
#include <cstdio>
#include <optional>

#include "Commands.h"
#include "Failure.h"
#include "Json.h"
#include "Output.h"
#include "vantor/files/VolumeInfo.h"
#include "vantor/files/VolumeParameters.h"

namespace cli {
namespace {

struct Capability {
    const char* name;
    Boolean (*has)(const GetVolParmsInfoBuffer*);
};

constexpr Capability kCapabilities[] = {{"desktop-database", hasDesktopMgr},
                                        {"catalog-search", hasCatSearch},
                                        {"file-ids", hasFileIDs},
                                        {"exchange", volSupportsFSExchangeObjects},
                                        {"deny-modes", hasOpenDeny},
                                        {"move-rename", hasMoveRename},
                                        {"copy-file", hasCopyFile},
                                        {"folder-lock", hasFolderLock},
                                        {"access-rights", hasAccessCntl},
                                        {"users-and-groups", hasUserGroupList},
                                        {"ejectable", volIsEjectable},
                                        {"server", isNetworkVolume}};

struct Volume {
    FSVolumeRefNum number;
    std::string name;
    UInt64 size, free;
    const char* lock;
    std::vector<std::string> capabilities;
};

// None where the volume does not tell.
std::vector<std::string> CapabilitiesOf(FSVolumeRefNum inNumber) {
    GetVolParmsInfoBuffer parms = {};
    SInt32 size = sizeof parms;
    std::vector<std::string> names;
    if (HGetVolParms(nullptr, inNumber, &parms, &size) != noErr) return names;
    for (const Capability& capability : kCapabilities)
        if (capability.has(&parms)) names.emplace_back(capability.name);
    return names;
}

const char* LockOf(FSVolumeRefNum inNumber) {
    switch (CheckVolLock(nullptr, inNumber)) {
        case wPrErr:
            return "hardware";
        case vLckdErr:
            return "software";
        default:
            return "none";
    }
}

// Nothing for a volume that is gone since it was listed.
std::optional<Volume> Ask(const FSSpec& inRoot) {
    Volume volume = {inRoot.vRefNum, MacRomanText(inRoot.name), 0, 0, LockOf(inRoot.vRefNum), {}};
    const OSErr err =
        XGetVInfo(inRoot.vRefNum, nullptr, &volume.number, &volume.free, &volume.size);
    if (err == nsvErr) return std::nullopt;
    ThrowIfFailed(err, "ask the volume " + volume.name);
    volume.capabilities = CapabilitiesOf(volume.number);
    return volume;
}

Json AsJson(const Volume& inVolume) {
    return {{"number", inVolume.number}, {"name", inVolume.name},
            {"size", inVolume.size},     {"free", inVolume.free},
            {"lock", inVolume.lock},     {"capabilities", inVolume.capabilities}};
}

void Print(const Volume& inVolume) {
    std::printf("%6d  %8s  %8s  %-8s  %s\n", inVolume.number, Bytes(SInt64(inVolume.size)).c_str(),
                Bytes(SInt64(inVolume.free)).c_str(), inVolume.lock, inVolume.name.c_str());
    std::string line;
    for (const std::string& name : inVolume.capabilities) line += (line.empty() ? "" : ", ") + name;
    if (!line.empty()) std::printf("        %s\n", line.c_str());
}

}  // namespace

void ShowVolumes(bool inJson) {
    Json all = Json::array();
    if (!inJson) std::printf("%6s  %8s  %8s  %-8s  %s\n", "NUMBER", "SIZE", "FREE", "LOCK", "NAME");
    FSSpec root;
    SInt16 count, index = 1;
    OSErr err;
    while ((err = OnLine(&root, 1, &count, &index)) == noErr) {
        const std::optional<Volume> volume = Ask(root);
        if (!volume) continue;
        if (inJson)
            all.push_back(AsJson(*volume));
        else
            Print(*volume);
    }
    if (err != nsvErr) ThrowIfFailed(err, "list the volumes");
    if (inJson) PrintJson(all);
}

}  // namespace cli
