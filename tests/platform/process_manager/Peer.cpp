// Owns one peer process with its two pipes.
#include "platform/process_manager/Peer.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <utility>

#include "support/Command.h"

namespace {

constexpr int kDeadlineMs = 20000;

std::string ReadLine(int inFile) {
    std::string line;
    for (;;) {
        pollfd item = {inFile, POLLIN, 0};
        char byte;
        if (poll(&item, 1, kDeadlineMs) != 1 || read(inFile, &byte, 1) != 1)
            throw std::runtime_error("the peer does not answer");
        if (byte == '\n') return line;
        line += byte;
    }
}

}  // namespace

Peer::Peer(const std::string& inProgram) {
    const std::string program = inProgram.empty() ? ProgramFolder() + "/process_peer" : inProgram;
    int input[2], output[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], 0);
    posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    char* words[] = {const_cast<char*>(program.c_str()), nullptr};
    const int err = posix_spawn(&mPid, program.c_str(), &actions, nullptr, words, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    mInput = input[1];
    mOutput = output[0];
    if (err != 0) throw std::runtime_error("cannot start " + program);
    mFirstAnswer = std::stoi(ReadLine(mOutput));
}

Peer::Peer(Peer&& ioOther) noexcept
    : mPid(std::exchange(ioOther.mPid, -1)),
      mInput(std::exchange(ioOther.mInput, -1)),
      mOutput(std::exchange(ioOther.mOutput, -1)),
      mFirstAnswer(ioOther.mFirstAnswer) {}

Peer::~Peer() {
    if (mPid > 0) kill(mPid, SIGKILL);
    Reap();
    if (mInput >= 0) close(mInput);
    if (mOutput >= 0) close(mOutput);
}

int Peer::Ask(char inCommand) {
    if (write(mInput, &inCommand, 1) != 1) throw std::runtime_error("the peer is gone");
    return std::stoi(ReadLine(mOutput));
}

void Peer::Quit(char inCommand) {
    if (write(mInput, &inCommand, 1) == 1) Reap();
}

void Peer::Kill() {
    siginfo_t info;
    kill(mPid, SIGKILL);
    waitid(P_PID, id_t(mPid), &info, WEXITED | WNOWAIT);
}

void Peer::Reap() {
    if (mPid > 0) waitpid(std::exchange(mPid, -1), nullptr, 0);
}
