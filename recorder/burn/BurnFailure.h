// What stops a job: a result code and one sentence for people.
#pragma once

#include <Carbon/MacErrors.h>
#include <Carbon/MacTypes.h>

#include <stdexcept>
#include <string>

namespace recorder {

// No usable disc in the drive.
constexpr SInt32 kNoDiscErr = -65;

class BurnFailure : public std::runtime_error {
  public:
    BurnFailure(SInt32 inCode, const std::string& inText)
        : std::runtime_error(inText), mCode(inCode) {}
    SInt32 Code() const { return mCode; }

  private:
    SInt32 mCode;
};

// The job was asked to stop; code userCanceledErr.
class BurnCancelled : public BurnFailure {
  public:
    BurnCancelled() : BurnFailure(userCanceledErr, "Cancelled.") {}
};

// The one table from errno to result codes on this side of the house.
SInt32 CodeFromErrno(int inErrno);

// "INWHAT: No such file or directory" with its code.
BurnFailure FailureFromErrno(int inErrno, const std::string& inWhat);

}  // namespace recorder
