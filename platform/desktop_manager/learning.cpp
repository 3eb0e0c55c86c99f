// Owns the choice of programs that a desktop database knows by itself.
#include "desktop_manager/learning.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <cstring>

#include "file_manager/catalog/catalog_info.h"
#include "file_manager/catalog/classic_dates.h"
#include "file_manager/catalog/finder_info.h"
#include "file_manager/catalog/names.h"
#include "file_manager/listings/folder_listing.h"
#include "file_manager/metadata/metadata.h"
#include "launch_services/applications.h"
#include "posix/base_folders.h"

namespace carbon {

namespace {

constexpr OSType kApplicationType = 'APPL';

void AddBundles(std::vector<LearnedProgram>* ioPrograms) {
    const auto applications = KnownApplications();
    for (const auto& application : *applications) {
        const BundleFacts& facts = *application.facts;
        if (facts.type != kApplicationType || facts.executablePath.empty()) continue;
        ioPrograms->push_back({facts.creator, facts.executablePath});
    }
}

void AddFilesIn(const std::string& inFolder, std::vector<LearnedProgram>* ioPrograms) {
    std::vector<std::string> names;
    if (ReadFolder(inFolder, &names) != noErr) return;
    for (const auto& name : names) {
        const auto path = PathInFolder(inFolder, name);
        ObjectStatus status;
        Metadata metadata;
        if (StatusOfObject(path, &status) != noErr || status.IsFolder()) continue;
        if (ReadMetadata(path, &metadata) != noErr) continue;
        FInfo info;
        std::memcpy(&info, metadata.finderInfo, sizeof info);
        if (info.fdType == kApplicationType) ioPrograms->push_back({info.fdCreator, path});
    }
}

bool IsThere(Objects& ioObjects, FSVolumeRefNum inVolume, const DesktopApplication& inRow) {
    FSSpec spec{};
    spec.vRefNum = inVolume;
    spec.parID = inRow.parent;
    SetPascal(inRow.name, kLongestSpecName, spec.name);
    Object object;
    return ioObjects.FindBySpec(spec, &object) == noErr && !object.status.IsFolder();
}

}  // namespace

std::vector<LearnedProgram> ProgramsToLearn() {
    std::vector<LearnedProgram> programs;
    AddBundles(&programs);
    for (const auto& folder : DataFolders()) {
        AddFilesIn(folder + "/vantor/Applications", &programs);
    }
    return programs;
}

DesktopApplication RowOf(const Object& inObject, OSType inCreator) {
    const SInt64 created = CreationTimeOf(inObject.status, MetadataOf(inObject).facts);
    return {inCreator, inObject.spec.parID, std::string(TextOfPascal(inObject.spec.name)),
            ClassicDate(created), false};
}

// Nothing is written when nothing has changed: databases are opened again and again.
bool Learn(Objects& ioObjects, FSVolumeRefNum inVolume,
           const std::vector<LearnedProgram>& inPrograms, DesktopDatabase& ioDatabase) {
    const auto known = ioDatabase.All(false);
    for (const auto& row : known) {
        if (!row.isLearned || IsThere(ioObjects, inVolume, row)) continue;
        if (!ioDatabase.Remove(row)) return false;
    }
    for (const auto& program : inPrograms) {
        Object object;
        if (ioObjects.FindByPath(program.path, &object) != noErr) continue;
        if (object.spec.vRefNum != inVolume || object.status.IsFolder()) continue;
        DesktopApplication row = RowOf(object, program.creator);
        const auto isEntered = std::count(known.begin(), known.end(), row) != 0;
        row.isLearned = true;
        const auto isLearned = std::count(known.begin(), known.end(), row) != 0;
        if (!isEntered && !isLearned && !ioDatabase.Add(row)) return false;
    }
    return !ioDatabase.IsDamaged();
}

}  // namespace carbon
