// Owns the reading of /proc/<pid>/stat.
#include "posix/proc_stat.h"

#include <Carbon/OSUtils.h>
#include <fcntl.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "posix/UniqueFd.h"

namespace carbon {
namespace {

constexpr int kFieldsFromStateToStartTime = 19;

// The fields after the program's name, which stands in brackets and may itself hold brackets.
std::string FieldsAfterName(pid_t inPid) {
    const UniqueFd file(
        open(("/proc/" + std::to_string(inPid) + "/stat").c_str(), O_RDONLY | O_CLOEXEC));
    char text[1024];
    const ssize_t size = file ? read(file.Get(), text, sizeof text) : -1;
    if (size <= 0) return {};
    const std::string line(text, std::size_t(size));
    const std::size_t bracket = line.rfind(") ");
    return bracket == std::string::npos ? std::string() : line.substr(bracket + 2);
}

}  // namespace

std::uint64_t ProcessStartTime(pid_t inPid) {
    const std::string fields = FieldsAfterName(inPid);
    if (fields.empty() || std::strchr("ZXx", fields[0]) != nullptr) return 0;
    std::size_t at = 0;
    for (int skipped = 0; skipped < kFieldsFromStateToStartTime; ++skipped) {
        at = fields.find(' ', at);
        if (at == std::string::npos) return 0;
        ++at;
    }
    return std::strtoull(fields.c_str() + at, nullptr, 10);
}

// The kernel's count goes on while the machine sleeps, TickCount's does not: only the age is common
// to both.
std::uint32_t TicksAtStart(std::uint64_t inStartTime) {
    timespec now;
    clock_gettime(CLOCK_BOOTTIME, &now);
    const auto perSecond = std::uint64_t(sysconf(_SC_CLK_TCK));
    const std::uint64_t kernel = std::uint64_t(now.tv_sec) * perSecond +
                                 std::uint64_t(now.tv_nsec) * perSecond / 1'000'000'000;
    const std::uint64_t age = kernel > inStartTime ? kernel - inStartTime : 0;
    return TickCount() - std::uint32_t(age * 60 / perSecond);
}

bool IsProcessAlive(pid_t inPid, std::uint64_t inStartTime) {
    return inPid > 0 && inStartTime != 0 && ProcessStartTime(inPid) == inStartTime;
}

}  // namespace carbon
