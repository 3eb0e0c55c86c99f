// The applications that volumes name for our signature, and the versions in their resources.
#include "vantor/controller/ClassicDiscovery.h"

#include <cstring>

#include "vantor/controller/CVantor.h"
#include "vantor/controller/Protocol.h"
#include "vantor/files/DesktopDatabase.h"
#include "vantor/files/LFile.h"
#include "vantor/files/UVolume.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"
#include "vantor/foundation/StResource.h"
#include "vantor/foundation/StResourceContext.h"

namespace {

// Version 7 as the word that a 'vers' resource begins with.
constexpr SInt32 kNewestTooOld = 0x06FFFFFF;

// The version of the file whose resource fork `ioFile` has been told to open. Thrown: the codes of
// opening, and that of a missing resource.
SInt32 ReadVersion(LFile& ioFile) {
    const StResLoad withoutLoading(false);
    const StCurResFile current(ioFile.OpenResourceFork(fsRdPerm));
    SetResLoad(true);
    const StResource version('vers', 1, true, false);
    SInt32 number = 0;
    if (GetHandleSize(version.Get()) < Size{sizeof number}) LException::Throw(resNotFound);
    std::memcpy(&number, *version.Get(), sizeof number);
    return NativeFromBigEndian(number);
}

// The application that a volume names for the signature. False for a volume that cannot be asked or
// has none.
bool FindOnVolume(SInt16 inIndex, FSSpec& outSpec) {
    if (!UVolume::IsSearchable(inIndex)) return false;
    const SInt16 volume = UVolume::GetIndVolume(inIndex);
    if (!UVolume::VolHasDesktopDB(volume)) return false;
    FSSpec found;
    if (FSpDTGetAPPL(nullptr, volume, kMirelSignature, &found) != noErr) return false;
    ThrowIfError(FSMakeFSSpec(found.vRefNum, found.parID, found.name, &outSpec));
    return true;
}

}  // namespace

bool IsClassicFileValid(const FSSpec& inSpec) {
    FInfo info;
    if (FSpGetFInfo(&inSpec, &info) != noErr) return false;
    if (info.fdType != kMirelFileType || info.fdCreator != kMirelSignature) return false;
    const StCurResFile before(-1);  // opening makes the file current before anyone can save that
    LFile file(inSpec);
    // Kept: compared as a signed word, where bundles are compared field by field.
    return ReadVersion(file) > kNewestTooOld;
}

void FindOnClassicVolumes(FSSpec& outSpec) {
    bool foundInvalid = false;
    const SInt16 count = UVolume::GetNumVolumes();
    for (SInt32 index = 1; index <= count; ++index) {
        if (!FindOnVolume(SInt16(index), outSpec)) continue;
        if (CVantor::IsMirelFileValid(outSpec)) return;
        foundInvalid = true;
    }
    LException::Throw(foundInvalid ? kMirelInvalid : kMirelNotFound);
}
