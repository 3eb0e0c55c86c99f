// What the calls that take a parameter record have in common.
#pragma once

#include <Carbon/Files.h>

namespace carbon {

// Runs `inWork` on a record and leaves its result in the record too.
template <typename Record, typename Work>
OSErr Perform(Record* ioRecord, Work inWork) {
    return ioRecord->ioResult = inWork(*ioRecord);
}

}  // namespace carbon
