// What ends a command early: one plain sentence, a code, the exit status.
#pragma once

#include <Carbon/Carbon.h>

#include <stdexcept>
#include <string>

namespace cli {

// The exit statuses of every command, as --help tells them.
enum ExitStatus {
    kSuccess = 0,
    kFailed = 1,        // the recorder or the system refused; the message says why
    kBadUsage = 2,      // the command line makes no sense
    kNoRecorder = 3,    // no recorder that can be driven
    kBadSource = 4,     // something to be burned cannot be read or placed
    kNotVerified = 5,   // written, but reading it back showed differences
    kInterrupted = 130  // Ctrl-C
};

class Failure : public std::runtime_error {
  public:
    Failure(const std::string& inSentence, SInt32 inCode, ExitStatus inExit = kFailed)
        : std::runtime_error(inSentence), mCode(inCode), mExit(inExit) {}

    SInt32 Code() const { return mCode; }
    ExitStatus Exit() const { return mExit; }

  private:
    SInt32 mCode;
    ExitStatus mExit;
};

// The sentence for a result code, without the code itself. Never empty.
std::string SentenceFor(SInt32 inCode);

ExitStatus ExitFor(SInt32 inCode);

// Throws a Failure for a non-zero code; `inDoing` ("add the files") starts the sentence.
void ThrowIfFailed(SInt32 inCode, const std::string& inDoing);

}  // namespace cli
