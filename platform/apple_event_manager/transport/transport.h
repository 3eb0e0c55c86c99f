// What the process manager asks of the transport: the socket of this process, and notices to
// others.
#pragma once

#include <Carbon/MacTypes.h>

#include <string>

namespace carbon {

// Opens the socket of this process at `inPath` (its folder exists and is the user's own), replacing
// a leftover. Called once a process, by its registration, before its entry says that the socket is
// ready; a fork begins anew. Asks nothing of the process table.
OSErr StartListening(const std::string& inPath);

// Takes the socket away again; for the end of the process.
void StopListening();

// Sends the answers to quit events that this thread has taken. They are kept until the program
// waits for something else, else until it is off the list of processes: whoever is told of the yes
// and looks for the program next must not meet one that is about to go.
void AnswerQuits();

enum class ControlKind : UInt32 {
    kWakeUp = 'wake',           // ends the sleep of the target's event wait
    kSuspend = 'susp',          // the target left the front
    kResume = 'resu',           // the target came to the front
    kApplicationDied = 'obit',  // becomes an 'aevt'/'obit' event: inAbout ended, with inStatus
};

// Tells another process, or this one (by its number or {0, 2}), without waiting for it. From any
// thread. procNotFound when there is no such process, connectionInvalid when it does not listen.
OSErr SendControl(const ProcessSerialNumber& inTarget, ControlKind inKind,
                  const ProcessSerialNumber& inAbout = {0, 0}, SInt32 inStatus = 0);

}  // namespace carbon
