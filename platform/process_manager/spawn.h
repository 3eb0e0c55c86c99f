// Starting a Linux process for a launch, and noticing its end.
#pragma once

#include <Carbon/MacTypes.h>
#include <sys/types.h>

#include <functional>
#include <string>

namespace carbon {

// Starts a program with nothing of the caller's but its environment: a session of its own (so that
// a terminal's Ctrl-C does not reach it), the root as its folder, no open files, signals as at the
// start of a program. Its error output goes to console.log in the state folder.
// kLSExecutableIncorrectFormat, kLSNoLaunchPermissionErr, kLSNoExecutableErr, memFullErr,
// kLSUnknownErr.
OSErr Spawn(const std::string& inExecutable, pid_t* outPid);

// Calls inThen on a thread of its own once this child has ended, and takes it from the list of the
// host's ended children; others stay there. The status is what it ended with, negative for a
// signal, 0 when the host has asked for it first.
// Where no thread can be made, inThen is never called.
void WhenEnded(pid_t inPid, std::function<void(SInt32 inStatus)> inThen);

}  // namespace carbon
