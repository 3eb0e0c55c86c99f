// What is true of an object now, looked up when it is asked for.
#pragma once

#include <optional>

#include "file_manager/catalog/catalog_records.h"

namespace carbon {

class LiveObject {
  public:
    LiveObject(Objects& ioObjects, const Object& inObject)
        : mObjects(ioObjects), mObject(inObject) {}

    const Object& Itself() const { return mObject; }
    bool IsFolder() const { return mObject.status.IsFolder(); }

    // As PBGetCatInfo tells it. A folder's fields lie where a file has its own of the same purpose.
    const HFileInfo& File();
    const DirInfo& Folder();

  private:
    const CInfoPBRec& Record();

    Objects& mObjects;
    const Object& mObject;
    std::optional<CInfoPBRec> mRecord;
};

}  // namespace carbon
