#include "support/EventPeer.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "support/Command.h"

using Clock = std::chrono::steady_clock;

EventPeer::EventPeer(const std::string& inProgram, const std::vector<std::string>& inWords) {
    std::string path = ProgramFolder() + "/" + inProgram;
    std::vector<char*> words = {path.data()};
    for (const std::string& word : inWords) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    const int error = posix_spawn(&mPid, path.c_str(), &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    mOutput = ends[0];
    if (error != 0) throw std::runtime_error("cannot start " + path);
}

EventPeer::EventPeer(EventPeer&& ioOther) noexcept
    : mPid(std::exchange(ioOther.mPid, -1)),
      mOutput(std::exchange(ioOther.mOutput, -1)),
      mNumber(ioOther.mNumber) {}

EventPeer& EventPeer::operator=(EventPeer&& ioOther) noexcept {
    std::swap(mPid, ioOther.mPid);
    std::swap(mOutput, ioOther.mOutput);
    std::swap(mNumber, ioOther.mNumber);
    return *this;
}

EventPeer::~EventPeer() {
    if (mPid > 0) {
        kill(mPid, SIGKILL);
        waitpid(mPid, nullptr, 0);
    }
    if (mOutput >= 0) close(mOutput);
}

ProcessSerialNumber EventPeer::Psn() {
    std::string line;
    while (mNumber == 0 && line.find('\n') == std::string::npos) {
        pollfd readable{mOutput, POLLIN, 0};
        char byte;
        if (poll(&readable, 1, 20'000) <= 0 || read(mOutput, &byte, 1) != 1) return {0, 0};
        line += byte;
    }
    if (mNumber == 0) mNumber = static_cast<UInt32>(std::strtoul(line.c_str(), nullptr, 10));
    return {0, mNumber};
}

int EventPeer::Wait(int inSeconds) {
    const auto deadline = Clock::now() + std::chrono::seconds(inSeconds);
    int status;
    while (waitpid(mPid, &status, WNOHANG) == 0) {
        if (Clock::now() > deadline) return -1;
        usleep(2000);
    }
    mPid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

EventPeer StartServer(const std::vector<std::string>& inWords) {
    return EventPeer("event_server", inWords);
}
