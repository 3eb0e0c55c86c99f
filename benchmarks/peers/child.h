// Starts this same program again as the serving process of a benchmark.
#pragma once

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <string>
#include <vector>

#include "bench.h"

namespace bench {

// Where the two processes of a pair may run. On a machine with two cores the
// round trip of a blocking pair depends on this more than on the transport.
enum class Pin { none, same, split };

inline Pin pin_from(const std::string& s) {
    if (s == "none") return Pin::none;
    if (s == "same") return Pin::same;
    if (s == "split") return Pin::split;
    std::fprintf(stderr, "--pin none|same|split\n");
    std::exit(2);
}

inline void pin_to(int cpu) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(static_cast<unsigned>(cpu), &set);
    if (sched_setaffinity(0, sizeof set, &set) != 0) die("sched_setaffinity");
}

inline void pin_client(Pin pin) {
    if (pin != Pin::none) pin_to(0);
}
inline void pin_server(Pin pin) {
    if (pin == Pin::same) pin_to(0);
    if (pin == Pin::split) pin_to(1);
}

// A child process that is ended (by its own id) when the object goes away,
// and that ends by itself when this process dies.
class Child {
  public:
    // Runs body() in a forked child. body must not return to the caller's code.
    template <class F>
    static Child forked(F&& body) {
        const pid_t parent = getpid();
        const pid_t pid = fork();
        if (pid < 0) die("fork");
        if (pid == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (getppid() != parent) _exit(1);
            body();
            _exit(0);
        }
        return Child(pid);
    }
    // Runs this executable anew with the given arguments.
    static Child self(const std::vector<std::string>& args, Pin pin) {
        return forked([&] {
            pin_server(pin);
            std::vector<char*> argv;
            static char name[] = "peer-server";
            argv.push_back(name);
            for (const auto& a : args) argv.push_back(const_cast<char*>(a.c_str()));
            argv.push_back(nullptr);
            execv("/proc/self/exe", argv.data());
            die("execv");
        });
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    Child(Child&& other) noexcept : pid_(other.pid_) { other.pid_ = -1; }
    ~Child() {
        if (pid_ <= 0) return;
        kill(pid_, SIGTERM);
        waitpid(pid_, nullptr, 0);
    }
    pid_t pid() const { return pid_; }

  private:
    explicit Child(pid_t pid) : pid_(pid) {}
    pid_t pid_;
};

}  // namespace bench
