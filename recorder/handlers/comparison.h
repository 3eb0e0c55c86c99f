// The tests of "whose": comparing properties and values.
#pragma once

#include <Carbon/Carbon.h>

namespace recorder {

class RecorderState;

// Each side is a property's token, whose value counts, or a value. Throws the codes of
// CompareDescriptors and of reading the property.
bool CompareOperands(RecorderState& inState, const AEDesc& inLeft, DescType inOperator,
                     const AEDesc& inRight);

}  // namespace recorder
