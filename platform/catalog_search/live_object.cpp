// Owns looking at the objects that a search may have found.
#include "catalog_search/live_object.h"

#include "file_manager/catalog/finder_info.h"

namespace carbon {

const CInfoPBRec& LiveObject::Record() {
    if (!mRecord) {
        mRecord.emplace();
        FillRecord(mObjects, mObject, MetadataOf(mObject), &*mRecord);
    }
    return *mRecord;
}

const HFileInfo& LiveObject::File() {
    return Record().hFileInfo;
}

const DirInfo& LiveObject::Folder() {
    return Record().dirInfo;
}

}  // namespace carbon
