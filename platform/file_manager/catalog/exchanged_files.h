// Two files that change places, and the end of an exchange that a killed process left in its midst.
#pragma once

#include "file_manager/catalog/located.h"
#include "file_manager/metadata/metadata.h"

namespace carbon {

// One of two files to be exchanged, as it is before.
struct ExchangeSide {
    Located located;
    SInt64 created = 0;  // Unix time
    Metadata metadata;
};

// Contents, forks and the dates of their last changes change places; the rest stays with the names.
// A process killed on the way leaves all of the old state or all of the new one to those who look
// next. paramErr where the disk cannot exchange names.
OSErr ExchangeFiles(Objects& ioObjects, const ExchangeSide& inOne, const ExchangeSide& inOther);

// Ends what killed processes have begun. With the catalog held, whenever that was taken.
void FinishExchanges(Objects& ioObjects);

}  // namespace carbon
