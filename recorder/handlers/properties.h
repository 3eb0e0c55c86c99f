// The properties of the recorder's objects: docs/recorder-dictionary.md as a table.
#pragma once

#include "handlers/Values.h"
#include "handlers/objects.h"

namespace recorder {

// Throw errAENoSuchObject for a property the object does not have, errAENotModifiable for one that
// is only to be read.
void GetProperty(RecorderState& inState, const Object& inObject, StAEDescriptor& outValue);
void SetProperty(RecorderState& inState, const Object& inObject, const AEDesc& inValue);

// Whether the property cannot be told yet.
bool MustWaitFor(RecorderState& inState, const Object& inObject);

}  // namespace recorder
