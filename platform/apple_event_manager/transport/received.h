// What the manager adds to an event before a handler of this process sees it.
#pragma once

#include <Carbon/AEDataModel.h>
#include <Carbon/AppleEvents.h>

namespace carbon {

constexpr ProcessSerialNumber kSystemProcess = {0, 1};

struct Reception {
    ProcessSerialNumber sender;
    AEEventSource source;
    bool isReplyWanted;
    SInt32 interaction;
    SInt32 timeOut;
};

// Sets 'addr' (to the sender), 'esrc', 'repq', 'inte' and 'timo'.
OSErr MarkReceived(AppleEvent* ioEvent, const Reception& inReception);

// Sets 'addr' alone, which is enough for a reply.
OSErr SetSender(AppleEvent* ioEvent, const ProcessSerialNumber& inSender);

bool IsAppleEvent(const AEDesc& inDesc);

ProcessSerialNumber BigEndian(const ProcessSerialNumber& inNumber);

}  // namespace carbon
