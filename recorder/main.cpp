// Calverin: takes events until it is asked to quit.
#include <Carbon/Carbon.h>

#include <csignal>
#include <cstdio>

#include "burn/DriveShelf.h"
#include "handlers/handlers.h"
#include "vantor/foundation/LException.h"

namespace {

constexpr UInt32 kIdleTicks = 30,
                 kWaitingTicks =
                     3;  // 1/60 s: half a second, and 50 ms while somebody waits for an answer

// SIGTERM and SIGINT stop a running job and leave. The loop below looks at this often enough.
volatile std::sig_atomic_t sAskedToStop = 0;

void TakeSignals() {
    std::signal(SIGTERM, [](int) { sAskedToStop = 1; });
    std::signal(SIGINT, [](int) { sAskedToStop = 1; });
    std::signal(SIGPIPE, SIG_IGN);
}

void Run(recorder::Recorder& inRecorder) {
    while (!inRecorder.state.Turn()) {
        if (sAskedToStop != 0) inRecorder.state.StopAndQuit();
        const bool waiting = inRecorder.state.IsWaiting() || !inRecorder.late.IsEmpty();
        EventRecord event;
        if (WaitNextEvent(everyEvent, &event, waiting ? kWaitingTicks : kIdleTicks, nullptr) &&
            event.what == kHighLevelEvent)
            AEProcessAppleEvent(&event);
        inRecorder.late.Turn();
    }
    inRecorder.late.Turn();
}

}  // namespace

int main() {
    TakeSignals();
    try {
        recorder::SystemDrives drives;
        recorder::Recorder recorder(drives);
        recorder::InstallHandlers(recorder);
        Run(recorder);
    } catch (const LException& exception) {
        std::fprintf(stderr, "Calverin: %s (%d)\n", exception.what(),
                     int(exception.GetErrorCode()));
        return 1;
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "Calverin: %s\n", exception.what());
        return 1;
    }
    return 0;
}
