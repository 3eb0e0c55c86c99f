// Results of the calls on desktop databases.
#pragma once

#include <Carbon/Files.h>
#include <Carbon/MacErrors.h>

namespace carbon {

// Runs one call and leaves its result in the record too.
template <typename Call>
OSErr FinishDesktopCall(DTPBPtr ioBlock, Call inCall) {
    if (!ioBlock) return paramErr;
    return ioBlock->ioResult = inCall(*ioBlock);
}

}  // namespace carbon
