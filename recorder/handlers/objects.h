// The objects of the recorder: how a specifier becomes one of them.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

namespace recorder {

class RecorderState;

enum : DescType { kDiscClass = 'Disc', kDriveClass = 'Driv' };

// What a specifier means: the application, its disc, one of its drives, or a property of one of
// these.
struct Object {
    DescType objectClass = cApplication;
    std::string driveId;
    DescType property = 0;  // 0: the object itself
};

// Once, before any event. The state outlives the process's last event.
void InstallObjectAccessors(RecorderState& inState);

// The null descriptor is the application. Throws errAENoSuchObject and the codes of AEResolve.
Object ResolveObject(const AEDesc& inSpecifier);

}  // namespace recorder
