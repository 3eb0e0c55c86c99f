// Events kept in a file, in the form that docs/capture-format.md describes.
#pragma once

#include <Carbon/Carbon.h>

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace cli {

enum class CaptureKind : UInt32 {
    kSent = 'sent',
    kAnswered = 'rply',
    kEnded = 'done',
    kMissed = 'miss'  // the number of events that are not in the file
};

struct CaptureRecord {
    CaptureKind kind = CaptureKind::kMissed;
    SInt32 error = noErr;           // of the send, or in the answer; of kMissed how many
    UInt64 number = 0;              // an event and what came of it have the same
    SInt64 time = 0;                // nanoseconds since the start of 1970, UTC
    SInt64 elapsed = 0;             // nanoseconds since the event was sent
    UInt32 sender = 0, target = 0;  // low words of serial numbers
    OSType targetCreator = 0;       // 0: not known
    SInt32 replyMode = 0;
    std::string senderName, targetName;  // MacRoman, at most 31 characters
    std::vector<UInt8> event;            // flattened; empty for kEnded and kMissed
};

// The bytes of an event, and back. Throw a Failure.
std::vector<UInt8> BytesOfEvent(const AppleEvent& inEvent);
void EventFromBytes(const std::vector<UInt8>& inBytes, AppleEvent* outEvent);

// Each record reaches the file as a whole before the next one is begun, so that a program that is
// killed leaves a file that can be read. Everything throws a Failure.
class CaptureWriter {
  public:
    explicit CaptureWriter(const std::string& inPath);  // a file that is there is not touched
    ~CaptureWriter();
    CaptureWriter(const CaptureWriter&) = delete;
    CaptureWriter& operator=(const CaptureWriter&) = delete;

    void Write(const CaptureRecord& inRecord);

  private:
    void WriteAll(const std::vector<UInt8>& inBytes);

    std::string mPath;
    int mFile;
};

// Believes nothing in the file: what keeps no rule, and an end in the middle of a record, throw a
// Failure that says where.
class CaptureReader {
  public:
    explicit CaptureReader(std::istream& inStream);  // which stays the caller's
    std::optional<CaptureRecord> Next();             // nothing at the end

  private:
    bool Read(size_t inSize, std::vector<UInt8>* outBytes);

    std::istream& mStream;
    UInt64 mAt = 0;  // bytes read
};

}  // namespace cli
