// Starts peer programs and speaks with them over their standard input and output.
#pragma once

#include <Carbon/MacTypes.h>
#include <sys/types.h>

#include <string>

// The part of a serial number that tells processes apart, as a value: the records that hold it are
// packed, and a test macro may not bind a reference into them.
inline UInt32 Low(const ProcessSerialNumber& inPsn) {
    return inPsn.lowLongOfPSN;
}

class Peer {
  public:
    // Starts the program, by default the peer beside the running test, and waits for its number.
    explicit Peer(const std::string& inProgram = {});
    ~Peer();  // kills and reaps it
    Peer(Peer&& ioOther) noexcept;
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    pid_t Pid() const { return mPid; }
    ProcessSerialNumber Psn() const { return {0, UInt32(mFirstAnswer)}; }
    int FirstAnswer() const { return mFirstAnswer; }  // the number, or the code it failed with

    int Ask(char inCommand);
    void Quit(char inCommand = 'q');  // and waits for its end
    void Kill();  // by SIGKILL; returns when the kernel has it as dead, not yet reaped

  private:
    void Reap();

    pid_t mPid = -1;
    int mInput = -1;
    int mOutput = -1;
    int mFirstAnswer = 0;
};
