// Owns the note that Ctrl-C was pressed and the idle procedure that looks at it.
#include "Interrupt.h"

#include <signal.h>

#include "vantor/api/Vantor.h"

namespace cli {
namespace {

volatile sig_atomic_t gInterrupts = 0;
bool gDeferred = false;

void NoteInterrupt(int) {
    gInterrupts = gInterrupts + 1;
}

}  // namespace

void WatchForInterrupt() {
    struct sigaction action = {};
    action.sa_handler = NoteInterrupt;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    VantorSetAEIdleProc(IdleUntilInterrupt);
}

int InterruptCount() {
    return gInterrupts;
}

Boolean IdleUntilInterrupt(EventRecord*, SInt32* outSleepTime, RgnHandle* outMouseRegion) {
    *outSleepTime = 6;
    *outMouseRegion = nullptr;
    return InterruptCount() > (gDeferred ? 1 : 0);
}

InterruptDeferral::InterruptDeferral() {
    gDeferred = true;
}

InterruptDeferral::~InterruptDeferral() {
    gDeferred = false;
}

}  // namespace cli
