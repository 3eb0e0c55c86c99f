// The calls in front of the C library's.
#include "DiskFaults.h"

#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

DiskFaults gDiskFaults;

namespace {

void Step() {
    if (gDiskFaults.killAt > 0 && --gDiskFaults.killAt == 0) kill(getpid(), SIGKILL);
}

}  // namespace

extern "C" {

int link(const char* inFrom, const char* inTo) noexcept {
    Step();
    if (!gDiskFaults.hasNoLinks)
        return int(syscall(SYS_linkat, AT_FDCWD, inFrom, AT_FDCWD, inTo, 0));
    errno = EPERM;
    return -1;
}

int open(const char* inPath, int inFlags, ...) {
    va_list rest;
    va_start(rest, inFlags);
    const mode_t mode = inFlags & (O_CREAT | O_TMPFILE) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    if (!gDiskFaults.hasNoNamelessFiles || (inFlags & O_TMPFILE) != O_TMPFILE)
        return int(syscall(SYS_openat, AT_FDCWD, inPath, inFlags, mode));
    errno = EOPNOTSUPP;
    return -1;
}

int unlink(const char* inPath) noexcept {
    Step();
    return int(syscall(SYS_unlinkat, AT_FDCWD, inPath, 0));
}

int rename(const char* inFrom, const char* inTo) noexcept {
    Step();
    return int(syscall(SYS_renameat2, AT_FDCWD, inFrom, AT_FDCWD, inTo, 0));
}

int renameat2(int inFromFolder, const char* inFrom, int inToFolder, const char* inTo,
              unsigned inFlags) noexcept {
    Step();
    return int(syscall(SYS_renameat2, inFromFolder, inFrom, inToFolder, inTo, inFlags));
}

ssize_t write(int inFile, const void* inBytes, size_t inCount) {
    Step();
    return syscall(SYS_write, inFile, inBytes, inCount);
}

ssize_t pwrite(int inFile, const void* inBytes, size_t inCount, off_t inOffset) {
    Step();
    return syscall(SYS_pwrite64, inFile, inBytes, inCount, inOffset);
}

}  // extern "C"
