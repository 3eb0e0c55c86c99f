// Runs a command and reports its wall time, processor time and peak memory.
//
//   measure [--json] --name NAME [--bytes B] [--files F] [--lines N] -- CMD...
//
// With --bytes and --files it reports rates too; with --lines the command must
// print exactly N lines. The command's output is counted and thrown away, its
// error output appears only when it fails. (A small program of its own, since
// the peak memory of a child counts what its parent held when it forked.)

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench.h"

using namespace bench;

int main(int argc, char** argv) {
    int split = 1;
    while (split < argc && std::strcmp(argv[split], "--") != 0) ++split;
    if (split + 1 >= argc) {
        std::fprintf(stderr, "measure --name NAME [options] -- CMD...\n");
        return 2;
    }
    auto args = arguments(split, argv);
    const std::string name = take_option(args, "--name", "command");
    const double bytes = std::atof(take_option(args, "--bytes", "0").c_str());
    const double files = std::atof(take_option(args, "--files", "0").c_str());
    const long lines = std::atol(take_option(args, "--lines", "-1").c_str());

    int out[2];
    if (pipe2(out, O_CLOEXEC) != 0) die("pipe2");
    FILE* errors = std::tmpfile();
    if (errors == nullptr) die("tmpfile");
    const uint64_t start = now_ns();
    const pid_t pid = fork();
    if (pid < 0) die("fork");
    if (pid == 0) {
        dup2(out[1], 1);
        dup2(fileno(errors), 2);
        execvp(argv[split + 1], argv + split + 1);
        die(argv[split + 1]);
    }
    close(out[1]);
    static char buf[1 << 16];
    long counted = 0;
    for (ssize_t n; (n = read(out[0], buf, sizeof buf)) > 0;)
        counted += std::count(buf, buf + n, '\n');
    int status = 0;
    rusage usage{};
    if (wait4(pid, &status, 0, &usage) != pid) die("wait4");
    const double wall = static_cast<double>(now_ns() - start) / 1e9;
    const bool failed = !WIFEXITED(status) || WEXITSTATUS(status) != 0;
    if (failed || (lines >= 0 && counted != lines)) {
        std::rewind(errors);
        for (size_t n; (n = std::fread(buf, 1, sizeof buf, errors)) > 0;)
            std::fwrite(buf, 1, n, stderr);
        std::fprintf(stderr, "%s: status %d, %ld lines\n", name.c_str(), status, counted);
        return 1;
    }
    const auto seconds = [](const timeval& t) {
        return double(t.tv_sec) + double(t.tv_usec) / 1e6;
    };
    emit(name + ".wall", wall, "s");
    emit(name + ".cpu", seconds(usage.ru_utime) + seconds(usage.ru_stime), "s");
    emit(name + ".rss", static_cast<double>(usage.ru_maxrss) / 1024, "MiB");
    if (bytes > 0) emit(name + ".rate", bytes / 1e6 / wall, "MB/s");
    if (files > 0) emit(name + ".files", files / wall, "files/s");
    return 0;
}
