// The events the recorder answers: docs/recorder-dictionary.md as a table.
#pragma once

#include "disc/RecorderState.h"
#include "handlers/LateReplies.h"

namespace recorder {

// Whether the host's process is still there.
bool HostIsAlive(HostId inHost);

// What the handlers work on; outlives the process's last event.
struct Recorder {
    explicit Recorder(DriveSource& inDrives) : state(inDrives, HostIsAlive) {}

    RecorderState state;
    LateReplies late;
};

// Once, before any event.
void InstallHandlers(Recorder& inRecorder);

}  // namespace recorder
