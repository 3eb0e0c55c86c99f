// Catalog records: what the old calls tell about a file or a folder.
#pragma once

#include "file_manager/catalog/objects.h"
#include "file_manager/metadata/metadata.h"

namespace carbon {

// What is known of what lies beside an object, before looking for it.
enum class Beside {
    kUnknown,
    kNoCompanion  // at most attributes
};

Metadata MetadataOf(const Object& inObject, Beside inBeside);

// Fill all but the common head.
void FillRecord(Objects& ioObjects, const Object& inObject, const Metadata& inMetadata,
                CInfoPBRec* outRecord);
void FillRecord(Objects& ioObjects, const Object& inObject, const Metadata& inMetadata,
                HFileParam* outRecord);

}  // namespace carbon
