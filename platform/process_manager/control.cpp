// Owns the calls that act on a process: waking, killing, leaving.
#include <Carbon/Processes.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "apple_event_manager/transport/transport.h"
#include "posix/UniqueFd.h"
#include "posix/os_err.h"
#include "process_manager/process_table.h"
#include "system_services/hooks.h"

namespace carbon {
namespace {

// A process that is starting does not sleep yet: there is nothing to wake.
OSErr Wake(const ProcessSerialNumber& inPsn) {
    const OSErr err = CheckIn();
    if (err != noErr) return err;
    const auto entry = FindProcess(inPsn);
    if (!entry) return procNotFound;
    return entry->socketReady ? SendControl(entry->psn, ControlKind::kWakeUp) : OSErr(noErr);
}

// The descriptor pins the process down before the second look at the table, so that a later process
// with the same Linux number cannot be hit.
OSErr Kill(const ProcessSerialNumber& inPsn) {
    const OSErr err = CheckIn();
    if (err != noErr) return err;
    const auto entry = FindProcess(inPsn);
    if (!entry) return procNotFound;
    const UniqueFd process(int(syscall(SYS_pidfd_open, entry->pid, 0)));
    if (!process || !FindProcess(entry->psn)) return procNotFound;
    if (syscall(SYS_pidfd_send_signal, process.Get(), SIGKILL, nullptr, 0) == 0) return noErr;
    return errno == ESRCH ? OSErr(procNotFound) : OSErrFromErrno(errno);
}

}  // namespace
}  // namespace carbon

void ExitToShell(void) {
    carbon::LeaveProgram();
}

OSErr WakeUpProcess(const ProcessSerialNumber* PSN) {
    return PSN == nullptr ? OSErr(paramErr) : carbon::Wake(*PSN);
}

OSErr KillProcess(const ProcessSerialNumber* inProcess) {
    return inProcess == nullptr ? OSErr(paramErr) : carbon::Kill(*inProcess);
}
