// Sends COUNT 'Test'/'echo' events to the process with serial number {0, NUMBER} and compares every
// answer.
//
//   event_client NUMBER COUNT
//
// Exit code 0 when all answers were right, else 1, with the first wrong one on standard error.
#include <cstdio>
#include <cstdlib>

#include "support/TestEvents.h"

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const ProcessSerialNumber server = Numbered(static_cast<UInt32>(std::atoi(argv[1])));
    const int count = std::atoi(argv[2]);
    for (SInt32 i = 0; i < count; ++i) {
        OwnedDesc event, reply;
        MakeEvent(server, 'echo', &event);
        PutLong(&event, keyDirectObject, i);
        const OSErr err =
            AESend(&event, &reply, kAEWaitReply, kAENormalPriority, 60 * 60, nullptr, nullptr);
        if (err == noErr && LongIn(reply, keyDirectObject) == i) continue;
        std::fprintf(stderr, "event %d: error %d, answer %d\n", i, err,
                     LongIn(reply, keyDirectObject));
        return 1;
    }
    return 0;
}
