// Ctrl-C: noted by a signal handler, looked at between and during requests.
#pragma once

#include <Carbon/Carbon.h>

namespace cli {

// Notes SIGINT and SIGTERM instead of dying, and makes waits for the recorder look at the note.
// From the second one on, waits end at once.
void WatchForInterrupt();

int InterruptCount();

// The idle procedure that ends a wait on an interrupt; for requests sent past the exported
// functions.
Boolean IdleUntilInterrupt(EventRecord* inEvent, SInt32* outSleepTime, RgnHandle* outMouseRegion);

// While an instance lives, one interrupt does not end waits: the command deals with it itself (a
// burn cancels cleanly).
class InterruptDeferral {
  public:
    InterruptDeferral();
    ~InterruptDeferral();
    InterruptDeferral(const InterruptDeferral&) = delete;
    InterruptDeferral& operator=(const InterruptDeferral&) = delete;
};

}  // namespace cli
