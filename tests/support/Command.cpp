// Owns the running of other programs.
#include "support/Command.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>

namespace {

using Clock = std::chrono::steady_clock;

struct Child {
    pid_t pid = -1;
    int output = -1, errors = -1;
};

[[noreturn]] void Become(const std::vector<std::string>& inWords, const CommandOptions& inOptions) {
    if (!inOptions.folder.empty() && chdir(inOptions.folder.c_str()) != 0) _exit(126);
    for (const auto& entry : inOptions.environment) putenv(strdup(entry.c_str()));
    std::vector<char*> words;
    for (const auto& word : inWords) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    execvp(words[0], words.data());
    _exit(127);
}

Child Start(const std::vector<std::string>& inWords, const CommandOptions& inOptions) {
    int output[2], errors[2];
    if (pipe2(output, O_CLOEXEC) != 0 || pipe2(errors, O_CLOEXEC) != 0) return {};
    Child child;
    child.pid = fork();
    if (child.pid == 0) {
        const int nothing = open("/dev/null", O_RDONLY);
        dup2(nothing, STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        dup2(errors[1], STDERR_FILENO);
        Become(inWords, inOptions);
    }
    close(output[1]);
    close(errors[1]);
    child.output = output[0];
    child.errors = errors[0];
    return child;
}

// Takes what is there; false at the end.
bool Drain(int inFd, std::string& ioText) {
    char buffer[65536];
    const ssize_t got = read(inFd, buffer, sizeof buffer);
    if (got > 0) ioText.append(buffer, static_cast<size_t>(got));
    return got > 0;
}

bool InterruptDue(const CommandOptions& inOptions, Clock::time_point inStart,
                  const CommandResult& inSoFar) {
    if (!inOptions.interruptOnOutput.empty())
        return inSoFar.output.find(inOptions.interruptOnOutput) != std::string::npos;
    return inOptions.interruptAfterMs >= 0 &&
           Clock::now() >= inStart + std::chrono::milliseconds(inOptions.interruptAfterMs);
}

// Collects both streams until the program closed them or the deadline passed; true unless it
// passed.
bool Collect(const Child& inChild, const CommandOptions& inOptions, CommandResult& ioResult) {
    const auto start = Clock::now();
    bool interrupted = false;
    pollfd streams[] = {{inChild.output, POLLIN, 0}, {inChild.errors, POLLIN, 0}};
    while (streams[0].fd >= 0 || streams[1].fd >= 0) {
        if (Clock::now() > start + inOptions.deadline) return false;
        if (!interrupted && InterruptDue(inOptions, start, ioResult)) {
            kill(inChild.pid, SIGINT);
            interrupted = true;
        }
        if (poll(streams, 2, 20) <= 0) continue;
        if (streams[0].revents != 0 && !Drain(inChild.output, ioResult.output)) streams[0].fd = -1;
        if (streams[1].revents != 0 && !Drain(inChild.errors, ioResult.errors)) streams[1].fd = -1;
    }
    return true;
}

}  // namespace

CommandResult RunCommand(const std::vector<std::string>& inWords, const CommandOptions& inOptions) {
    CommandResult result;
    const Child child = Start(inWords, inOptions);
    if (child.pid < 0) return result;
    const bool inTime = Collect(child, inOptions, result);
    if (!inTime) kill(child.pid, SIGKILL);
    int status = 0;
    waitpid(child.pid, &status, 0);
    close(child.output);
    close(child.errors);
    if (inTime) result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

std::string ProgramFolder() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

bool HasTool(const std::string& inName) {
    std::istringstream path(std::getenv("PATH") != nullptr ? std::getenv("PATH") : "");
    for (std::string folder; std::getline(path, folder, ':');)
        if (access((folder + "/" + inName).c_str(), X_OK) == 0) return true;
    return false;
}
