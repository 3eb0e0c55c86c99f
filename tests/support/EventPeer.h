// A helper program of the event tests, started and ended with a scope.
#pragma once

#include <Carbon/MacTypes.h>
#include <sys/types.h>

#include <string>
#include <vector>

class EventPeer {
  public:
    // Starts a program that lies beside the running test.
    explicit EventPeer(const std::string& inProgram, const std::vector<std::string>& inWords = {});
    ~EventPeer();  // kills it
    EventPeer(EventPeer&& ioOther) noexcept;
    EventPeer& operator=(EventPeer&& ioOther) noexcept;
    EventPeer(const EventPeer&) = delete;

    pid_t Pid() const { return mPid; }
    // The number it prints when it can be sent to; {0, 0} when that does not come within 20 s.
    ProcessSerialNumber Psn();
    // Its exit code, 128 + signal, or -1 when it does not end within the time.
    int Wait(int inSeconds = 30);

  private:
    pid_t mPid = -1;
    int mOutput = -1;
    UInt32 mNumber = 0;
};

EventPeer StartServer(const std::vector<std::string>& inWords = {});
