// Packets of one connection: the input is cut at two-byte lengths, put together to frames, and what
// they hold is received as an event or a reply would be.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "apple_event_manager/internal.h"
#include "apple_event_manager/transport/frame.h"
#include "apple_event_manager/transport/received.h"

using namespace carbon;

namespace {

void Receive(Frame&& inFrame) {
    AppleEvent event, reply;
    if (DescFromBytes(std::move(inFrame.payload), &event) != noErr) return;
    const Reception reception{{0, inFrame.header.sender},
                              kAELocalProcess,
                              inFrame.header.request != 0,
                              inFrame.header.interaction,
                              inFrame.header.timeOut};
    if (IsAppleEvent(event) && MarkReceived(&event, reception) == noErr &&
        MakeReply(event, &reply) == noErr)
        AEDisposeDesc(&reply);
    AEDisposeDesc(&event);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inData, size_t inSize) {
    FrameAssembler assembler;
    while (inSize >= 2) {
        const size_t wanted = size_t{inData[0]} << 8 | inData[1];
        const size_t size = std::min(wanted, inSize - 2);
        switch (assembler.Take({inData + 2, size})) {
            case FrameAssembler::Progress::kBroken:
                return 0;
            case FrameAssembler::Progress::kComplete:
                Receive(assembler.TakeFrame());
                break;
            case FrameAssembler::Progress::kMore:
                break;
        }
        inData += 2 + size;
        inSize -= 2 + size;
    }
    return 0;
}
