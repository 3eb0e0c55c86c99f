// Notebook: keeps notes, and shows and changes them when it is asked by Apple Events.
#include <Carbon/Carbon.h>

#include <cstdio>

#include "events.h"
#include "vantor/foundation/LException.h"

int main() {
    constexpr UInt32 kForAWhile = 60 * 60;  // 1/60 s; an event ends the sleep at once
    try {
        notebook::InstallHandlers();
        while (!notebook::IsAskedToQuit()) {
            EventRecord event;
            if (WaitNextEvent(everyEvent, &event, kForAWhile, nullptr) &&
                event.what == kHighLevelEvent)
                AEProcessAppleEvent(&event);
        }
    } catch (const LException& exception) {
        std::fprintf(stderr, "Notebook: %s (%d)\n", exception.what(),
                     int(exception.GetErrorCode()));
        return 1;
    }
    return 0;
}
