// Shared by the peer benchmarks: a clock, percentiles and the output format.
//
// Every program prints one measurement per line, "name value unit", or with
// --json one JSON object per line. The runner (run.py) reads either.
#pragma once

#include <sys/types.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace bench {

inline uint64_t now_ns() {
    using namespace std::chrono;
    return static_cast<uint64_t>(
        duration_cast<nanoseconds>(steady_clock::now().time_since_epoch()).count());
}

inline bool& json_output() {
    static bool on = false;
    return on;
}

inline void emit(const std::string& name, double value, const char* unit) {
    if (json_output())
        std::printf("{\"name\":\"%s\",\"value\":%.9g,\"unit\":\"%s\"}\n", name.c_str(), value,
                    unit);
    else
        std::printf("%s %.9g %s\n", name.c_str(), value, unit);
    std::fflush(stdout);
}

// Latency samples of one kind of request, reported as p50, p99 and rate.
class Samples {
  public:
    explicit Samples(size_t expected = 1u << 20) { ns_.reserve(expected); }
    void add(uint64_t ns) { ns_.push_back(ns); }
    size_t size() const { return ns_.size(); }

    // elapsed_ns: wall time of the whole loop, requests and bookkeeping.
    void report(const std::string& name, uint64_t elapsed_ns) {
        if (ns_.empty()) return;
        std::sort(ns_.begin(), ns_.end());
        emit(name + ".p50", at(0.50) / 1e3, "us");
        emit(name + ".p99", at(0.99) / 1e3, "us");
        emit(name + ".rate", ns_.size() * 1e9 / static_cast<double>(elapsed_ns), "req/s");
    }
    double median_ns() {
        std::sort(ns_.begin(), ns_.end());
        return ns_.empty() ? 0.0 : at(0.50);
    }

    double least_ns() {
        std::sort(ns_.begin(), ns_.end());
        return ns_.empty() ? 0.0 : at(0);
    }

  private:
    double at(double q) const {
        size_t i = static_cast<size_t>(q * static_cast<double>(ns_.size() - 1) + 0.5);
        return static_cast<double>(ns_[i]);
    }
    std::vector<uint64_t> ns_;
};

// Calls request() until seconds have passed (after a short warm-up) and
// reports the samples under name.
template <class F>
void time_requests(const std::string& name, double seconds, F&& request) {
    const uint64_t limit = static_cast<uint64_t>(seconds * 1e9);
    const uint64_t warm_end = now_ns() + limit / 10;
    while (now_ns() < warm_end) request();
    Samples samples;
    const uint64_t start = now_ns();
    uint64_t t = start;
    while (t - start < limit) {
        request();
        const uint64_t u = now_ns();
        samples.add(u - t);
        t = u;
    }
    samples.report(name, t - start);
}

// The processor's time that another process of this user has taken so far.
inline uint64_t processor_ns(pid_t process) {
    clockid_t clock;
    timespec used;
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &used) != 0) {
        std::fprintf(stderr, "no clock of process %d\n", static_cast<int>(process));
        std::exit(1);
    }
    return static_cast<uint64_t>(used.tv_sec) * 1'000'000'000 + static_cast<uint64_t>(used.tv_nsec);
}

// The same as time_requests; beside it, as name.server, what of each request the process that
// serves it takes of the processor.
template <class F>
void time_handling(const std::string& name, double seconds, pid_t server, F&& request) {
    uint64_t count = 0, begin = 0;
    const uint64_t warm_end = now_ns() + static_cast<uint64_t>(seconds * 1e8);
    while (now_ns() < warm_end) request();
    begin = processor_ns(server);
    time_requests(name, seconds, [&] {
        request();
        ++count;
    });
    emit(name + ".server", static_cast<double>(processor_ns(server) - begin) / 1e3 / count, "us");
}

// Runs body() at least min_reps times and until seconds have passed; what
// clock() advances meanwhile, in nanoseconds.
template <class F, class Clock>
Samples sample_by(Clock&& clock, double seconds, int min_reps, F&& body) {
    Samples samples(1024);
    const uint64_t limit = static_cast<uint64_t>(seconds * 1e9);
    const uint64_t start = now_ns();
    while (static_cast<int>(samples.size()) < min_reps || now_ns() - start < limit) {
        const uint64_t t = clock();
        body();
        samples.add(clock() - t);
    }
    return samples;
}

// The median of the wall clock.
template <class F>
double median_time(double seconds, int min_reps, F&& body) {
    return sample_by(now_ns, seconds, min_reps, body).median_ns();
}

// The least processor's time of this process and of the one that serves it together. On one core
// that is the wall clock; what other programs do to requests that last longer than a turn of theirs
// only adds to it.
template <class F>
double least_processor_time(double seconds, int min_reps, pid_t server, F&& body) {
    const auto clock = [&] { return processor_ns(getpid()) + processor_ns(server); };
    return sample_by(clock, seconds, min_reps, body).least_ns();
}

[[noreturn]] inline void die(const char* what) {
    std::perror(what);
    std::exit(1);
}

// Removes "--flag" from the arguments; true when it was there.
inline bool take_flag(std::vector<std::string>& args, const std::string& flag) {
    auto it = std::find(args.begin(), args.end(), flag);
    if (it == args.end()) return false;
    args.erase(it);
    return true;
}

// Removes "--option value" from the arguments and returns the value.
inline std::string take_option(std::vector<std::string>& args, const std::string& option,
                               const std::string& fallback) {
    auto it = std::find(args.begin(), args.end(), option);
    if (it == args.end()) return fallback;
    if (it + 1 == args.end()) {
        std::fprintf(stderr, "%s needs a value\n", option.c_str());
        std::exit(2);
    }
    std::string value = *(it + 1);
    args.erase(it, it + 2);
    return value;
}

inline std::vector<std::string> arguments(int argc, char** argv) {
    std::vector<std::string> args(argv + 1, argv + argc);
    json_output() = take_flag(args, "--json");
    return args;
}

}  // namespace bench
