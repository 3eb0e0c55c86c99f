// Which process an address means.
#pragma once

#include <Carbon/AEDataModel.h>

namespace carbon {

struct Target {
    ProcessSerialNumber psn;
    bool isSelf;
};

// The process that an event is addressed to. procNotFound, errAEUnknownAddressType. A serial number
// of another process is taken as it is; whether it runs shows when it is sent to.
OSErr FindTarget(const AppleEvent& inEvent, Target* outTarget);

}  // namespace carbon
