// The user's processes as every program sees them: one table in the runtime folder, mapped.
//
// An entry belongs to the thread that made it; the kernel marks it when that thread ends, so no
// crash leaves an entry behind. Reading takes no lock and, for one entry, no system call.
#pragma once

#include <Carbon/Files.h>
#include <Carbon/MacTypes.h>
#include <sys/types.h>

#include <optional>
#include <string>

namespace carbon {

struct ProcessEntry {
    ProcessSerialNumber psn;  // {0, 0} only when the caller could not be registered
    pid_t pid;
    OSType type;
    OSType signature;
    UInt32 mode;  // the mode flags of Processes.h
    ProcessSerialNumber launcher;
    UInt32 launchTicks;
    bool starting;     // launched, and has not made its first Carbon call
    bool socketReady;  // listens for events
    Str63 name;        // MacRoman, at most 31 characters
    FSSpec application;

    bool IsBackgroundOnly() const;
    std::string SocketPath() const;  // <runtime>/<low word as hex>.sock
};

// Makes the caller a process if it is none yet (also after a fork). permErr, memFullErr, ioErr.
// The first call of a program starts listening for events.
OSErr CheckIn();

// The caller, registered. When CheckIn fails, an entry without a serial number.
const ProcessEntry& CurrentProcess();

// {0, kCurrentProcess} is the caller. An entry whose process has ended is not found.
std::optional<ProcessEntry> FindProcess(const ProcessSerialNumber& inPsn);
std::optional<ProcessEntry> FindProcessByPid(pid_t inPid);

// The first in launch order with this creator, of whatever type.
std::optional<ProcessEntry> FindProcessBySignature(OSType inSignature);

// The first in launch order after inPsn; {0, 0} starts.
std::optional<ProcessEntry> NextProcess(const ProcessSerialNumber& inPsn);

// What is too long for the entry itself. Empty when the process has ended.
std::string ExecutablePath(const ProcessSerialNumber& inPsn);
std::string BundlePath(const ProcessSerialNumber& inPsn);  // empty without a bundle
std::string FullName(const ProcessSerialNumber& inPsn);    // UTF-8

}  // namespace carbon
