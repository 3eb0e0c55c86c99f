// Catalog records: what the old calls tell about a file or a folder.
#pragma once

#include "file_manager/metadata.h"
#include "file_manager/objects.h"

namespace carbon {

// What is known of what lies beside an object, before looking for it.
enum class Beside {
    kUnknown,
    kNoCompanion,  // at most attributes
    kNothing
};

// Fill all but the common head.
void FillRecord(Objects& ioObjects, const Object& inObject, Beside inBeside, CInfoPBRec* outRecord);
void FillRecord(Objects& ioObjects, const Object& inObject, Beside inBeside, HFileParam* outRecord);

}  // namespace carbon
