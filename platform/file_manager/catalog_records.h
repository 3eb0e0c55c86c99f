// Catalog records: what the old calls tell about a file or a folder.
#pragma once

#include "file_manager/metadata.h"
#include "file_manager/objects.h"

namespace carbon {

// Fills all but the common head. `inHasCompanion` false saves looking for one.
void FillRecord(Objects& ioObjects, const Object& inObject, bool inHasCompanion,
                CInfoPBRec* outRecord);
void FillRecord(Objects& ioObjects, const Object& inObject, bool inHasCompanion,
                HFileParam* outRecord);

}  // namespace carbon
