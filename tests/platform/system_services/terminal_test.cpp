// An alert on a real (pseudo) terminal.
#include <Carbon/Dialogs.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

// What the terminal shows until it shows `inAwaited` or ten seconds have passed.
std::string ReadUntil(int inTerminal, const std::string& inAwaited) {
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    std::string seen;
    while (seen.find(inAwaited) == std::string::npos && Clock::now() < deadline) {
        pollfd wait{inTerminal, POLLIN, 0};
        char buffer[512];
        if (poll(&wait, 1, 100) <= 0) continue;
        const ssize_t got = read(inTerminal, buffer, sizeof buffer);
        if (got <= 0) break;
        seen.append(buffer, size_t(got));
    }
    return seen;
}

TEST(StopAlert, IsAnsweredOnTheTerminal) {
    int terminal;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    ASSERT_GE(child, 0);
    if (child == 0) {
        const UInt8 message[] = "\5hello";
        ParamText(message, nullptr, nullptr, nullptr);
        _exit(StopAlert(251, nullptr));
    }
    const std::string shown = ReadUntil(terminal, "quit");
    EXPECT_EQ(write(terminal, "6\n", 2), 2);
    ReadUntil(terminal, "\n");
    int status = 0;
    const auto deadline = Clock::now() + std::chrono::seconds(10);
    pid_t ended = 0;
    while ((ended = waitpid(child, &status, WNOHANG)) == 0 && Clock::now() < deadline)
        ReadUntil(terminal, "\n");
    if (ended == 0) {
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
    }
    close(terminal);
    EXPECT_THAT(shown, testing::HasSubstr("hello"));
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 6);
}

}  // namespace
