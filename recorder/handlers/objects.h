// The objects of the recorder: how a specifier becomes one or more of them.
#pragma once

#include <vector>

#include "handlers/tokens.h"

namespace recorder {

class RecorderState;

// What a specifier means. One that asks for all of something, for a span or for what meets a test
// means many, even if only one is found.
struct Objects {
    std::vector<Object> each;
    bool areMany = false;
};

// Once, before any event. The state outlives the process's last event.
void InstallObjectAccessors(RecorderState& inState);

// The null descriptor is the application. Throws errAENoSuchObject and the codes of AEResolve.
Objects ResolveObjects(const AEDesc& inSpecifier);

// How many elements of the class the object has; none of a class that it does not know.
SInt32 CountElements(RecorderState& inState, DescType inClass, const Object& inContainer);

}  // namespace recorder
