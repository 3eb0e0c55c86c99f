// What it costs a program that somebody watches its events. One iteration is a status query of the
// real recorder.
//
//   watched [--json] [--seconds S]
//
// Measured in turns, four of each: before anybody watched in this session's world, with a monitor
// that reads, with one that is stopped, and when it has gone.
#include <Carbon/MacErrors.h>
#include <Platform/Monitor.h>
#include <poll.h>

#include "peers/bench.h"
#include "peers/child.h"
#include "vantor/api/Vantor.h"
#include "world.h"

using namespace bench;

namespace {

constexpr int kTurns = 4;

[[noreturn]] void Fail(const char* inWhat, SInt32 inCode) {
    std::fprintf(stderr, "watched: %s: %d\n", inWhat, inCode);
    VantorTerminateSession();
    std::exit(1);
}

// Reads until the other end of the pipe is closed, so that it leaves as a monitor does.
void Monitor(int inReady, int inEnd) {
    PlatformMonitorRef monitor = nullptr;
    if (PlatformMonitorOpen(&monitor) != noErr || write(inReady, "r", 1) != 1) _exit(1);
    pollfd end{inEnd, POLLIN, 0};
    while (poll(&end, 1, 0) == 0) {
        PlatformWatchedEvent event;
        if (PlatformMonitorNext(monitor, 20, &event) == noErr) AEDisposeDesc(&event.event);
    }
    PlatformMonitorClose(monitor);
}

// A monitor in a process of its own.
class Watcher {
  public:
    Watcher() {
        int ready[2], end[2];
        if (pipe2(ready, O_CLOEXEC) != 0 || pipe2(end, O_CLOEXEC) != 0) die("pipe");
        mPid = fork();
        if (mPid < 0) die("fork");
        if (mPid == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            close(end[1]);
            dup2(ready[1], 3);
            dup2(end[0], 4);
            execl("/proc/self/exe", "watched", "--monitor", nullptr);
            _exit(1);
        }
        close(ready[1]);
        close(end[0]);
        mEnd = end[1];
        char byte;
        if (read(ready[0], &byte, 1) != 1) Fail("the monitor did not start", 0);
        close(ready[0]);
    }
    ~Watcher() {
        kill(mPid, SIGCONT);
        close(mEnd);
        waitpid(mPid, nullptr, 0);
    }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;
    void Stop() { kill(mPid, SIGSTOP); }

  private:
    pid_t mPid;
    int mEnd;
};

void Query(double inSeconds, Samples* ioSamples) {
    const uint64_t end = now_ns() + uint64_t(inSeconds * 1e9);
    for (uint64_t begin = now_ns(); begin < end;) {
        SInt32 code = 0;
        const SInt32 status = VantorGetStatusCode(&code);
        if (status != noErr) Fail("status query", status);
        const uint64_t now = now_ns();
        ioSamples->add(now - begin);
        begin = now;
    }
}

void Measure(double inSeconds) {
    const double turn = inSeconds / kTurns;
    Samples before, reading, stopped, gone;
    Samples warm;
    Query(turn, &warm);
    Query(inSeconds, &before);
    for (int i = 0; i < kTurns; ++i) {
        {
            Watcher watcher;
            Query(turn, &reading);
            watcher.Stop();
            Query(turn, &stopped);
        }
        Query(turn, &gone);
    }
    emit("watched.before", before.median_ns() / 1e3, "us");
    emit("watched.reading", reading.median_ns() / 1e3, "us");
    emit("watched.stopped", stopped.median_ns() / 1e3, "us");
    emit("watched.gone", gone.median_ns() / 1e3, "us");
}

}  // namespace

int main(int inCount, char** inWords) {
    auto words = arguments(inCount, inWords);
    if (take_flag(words, "--monitor")) return Monitor(3, 4), 0;
    const double seconds = std::atof(take_option(words, "--seconds", "1").c_str());
    World world;
    const SInt32 status = VantorInitiateSession();
    if (status != noErr) Fail("opening a session", status);
    Measure(seconds);
    VantorTerminateSession();
    return 0;
}
