// Owns the bytes of captured events.
#include "Capture.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <istream>

#include "Failure.h"

namespace cli {
namespace {

constexpr char kMark[] = "VantorEv";
constexpr size_t kMarkSize = 8, kHeaderSize = 16, kRecordHeaderSize = 8;
constexpr UInt32 kVersion = 1;
constexpr UInt32 kRecordMark = 'rcrd';
constexpr size_t kFactsSize = 112;  // of a record, before the event
constexpr size_t kNameSize = 32;
constexpr size_t kLargestEvent = 32 << 20;

void Put(std::vector<UInt8>& ioBytes, UInt64 inValue, int inSize) {
    for (int shift = 8 * (inSize - 1); shift >= 0; shift -= 8)
        ioBytes.push_back(static_cast<UInt8>(inValue >> shift));
}

void PutName(std::vector<UInt8>& ioBytes, const std::string& inName) {
    const size_t length = std::min(inName.size(), kNameSize - 1);
    const size_t end = ioBytes.size() + kNameSize;
    ioBytes.push_back(static_cast<UInt8>(length));
    ioBytes.insert(ioBytes.end(), inName.begin(),
                   inName.begin() + static_cast<std::ptrdiff_t>(length));
    ioBytes.resize(end);
}

// Takes numbers and names off the front.
class Taker {
  public:
    explicit Taker(const std::vector<UInt8>& inBytes) : mAt(inBytes.data()) {}

    UInt64 Take(int inSize) {
        UInt64 value = 0;
        for (int i = 0; i < inSize; ++i) value = value << 8 | *mAt++;
        return value;
    }
    UInt32 Take32() { return static_cast<UInt32>(Take(4)); }
    std::optional<std::string> TakeName() {
        const UInt8* name = mAt;
        mAt += kNameSize;
        if (name[0] >= kNameSize) return {};
        return std::string(reinterpret_cast<const char*>(name + 1), name[0]);
    }

  private:
    const UInt8* mAt;
};

bool HasEvent(CaptureKind inKind) {
    return inKind == CaptureKind::kSent || inKind == CaptureKind::kAnswered;
}

bool IsKnown(CaptureKind inKind) {
    return HasEvent(inKind) || inKind == CaptureKind::kEnded || inKind == CaptureKind::kMissed;
}

std::vector<UInt8> BodyOf(const CaptureRecord& inRecord) {
    std::vector<UInt8> body;
    body.reserve(kFactsSize + inRecord.event.size());
    Put(body, static_cast<UInt32>(inRecord.kind), 4);
    Put(body, static_cast<UInt32>(inRecord.error), 4);
    Put(body, inRecord.number, 8);
    Put(body, static_cast<UInt64>(inRecord.time), 8);
    Put(body, static_cast<UInt64>(inRecord.elapsed), 8);
    Put(body, inRecord.sender, 4);
    Put(body, inRecord.target, 4);
    Put(body, inRecord.targetCreator, 4);
    Put(body, static_cast<UInt32>(inRecord.replyMode), 4);
    PutName(body, inRecord.senderName);
    PutName(body, inRecord.targetName);
    body.insert(body.end(), inRecord.event.begin(), inRecord.event.end());
    return body;
}

std::optional<CaptureRecord> RecordFrom(const std::vector<UInt8>& inBody) {
    Taker taker(inBody);
    CaptureRecord record;
    record.kind = static_cast<CaptureKind>(taker.Take32());
    record.error = static_cast<SInt32>(taker.Take32());
    record.number = taker.Take(8);
    record.time = static_cast<SInt64>(taker.Take(8));
    record.elapsed = static_cast<SInt64>(taker.Take(8));
    record.sender = taker.Take32();
    record.target = taker.Take32();
    record.targetCreator = taker.Take32();
    record.replyMode = static_cast<SInt32>(taker.Take32());
    const auto senderName = taker.TakeName(), targetName = taker.TakeName();
    const bool isSound = IsKnown(record.kind) && senderName && targetName &&
                         HasEvent(record.kind) == (inBody.size() > kFactsSize);
    if (!isSound) return {};
    record.senderName = *senderName;
    record.targetName = *targetName;
    record.event.assign(inBody.begin() + kFactsSize, inBody.end());
    return record;
}

[[noreturn]] void ThrowNoCapture(const std::string& inWhy) {
    throw Failure("This is no file of captured events that can be read: " + inWhy + ".",
                  errAECorruptData, kBadSource);
}

// The size that a flattened event itself says it has; 0 for what is none.
size_t SizeInside(const std::vector<UInt8>& inBytes) {
    constexpr size_t kSizeAt = 12, kContentAt = 16;
    if (inBytes.size() < kContentAt) return 0;
    UInt64 size = 0;
    for (size_t i = kSizeAt; i < kContentAt; ++i) size = size << 8 | inBytes[i];
    return kContentAt + (size + 3) / 4 * 4;
}

bool IsEvent(const AEDesc& inDesc) {
    UInt32 code;
    return AEGetAttributePtr(&inDesc, keyEventClassAttr, typeType, nullptr, &code, sizeof code,
                             nullptr) == noErr;
}

}  // namespace

std::vector<UInt8> BytesOfEvent(const AppleEvent& inEvent) {
    std::vector<UInt8> bytes(static_cast<size_t>(AESizeOfFlattenedDesc(&inEvent)));
    Size size = 0;
    ThrowIfFailed(AEFlattenDesc(&inEvent, reinterpret_cast<Ptr>(bytes.data()),
                                static_cast<Size>(bytes.size()), &size),
                  "keep an event");
    return bytes;
}

void EventFromBytes(const std::vector<UInt8>& inBytes, AppleEvent* outEvent) {
    AEInitializeDesc(outEvent);
    const bool isWhole = SizeInside(inBytes) == inBytes.size();
    if (isWhole && AEUnflattenDesc(inBytes.data(), outEvent) == noErr && IsEvent(*outEvent)) return;
    AEDisposeDesc(outEvent);
    ThrowNoCapture("what should be an event is none");
}

CaptureWriter::CaptureWriter(const std::string& inPath)
    : mPath(inPath), mFile(open(inPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600)) {
    if (mFile < 0)
        throw Failure(errno == EEXIST ? inPath + " is there already."
                                      : inPath + " cannot be made: " + std::strerror(errno) + ".",
                      errno == EEXIST ? dupFNErr : ioErr, errno == EEXIST ? kFailed : kBadSource);
    std::vector<UInt8> header(kMark, kMark + kMarkSize);
    Put(header, kVersion, 4);
    Put(header, 0, 4);
    WriteAll(header);
}

CaptureWriter::~CaptureWriter() {
    close(mFile);
}

void CaptureWriter::Write(const CaptureRecord& inRecord) {
    const std::vector<UInt8> body = BodyOf(inRecord);
    std::vector<UInt8> bytes;
    bytes.reserve(kRecordHeaderSize + body.size());
    Put(bytes, kRecordMark, 4);
    Put(bytes, body.size(), 4);
    bytes.insert(bytes.end(), body.begin(), body.end());
    WriteAll(bytes);
}

void CaptureWriter::WriteAll(const std::vector<UInt8>& inBytes) {
    for (size_t at = 0; at < inBytes.size();) {
        const ssize_t size = write(mFile, inBytes.data() + at, inBytes.size() - at);
        if (size < 0 && errno != EINTR)
            throw Failure(mPath + " cannot be written: " + std::strerror(errno) + ".",
                          errno == ENOSPC ? dskFulErr : ioErr);
        if (size > 0) at += static_cast<size_t>(size);
    }
}

CaptureReader::CaptureReader(std::istream& inStream) : mStream(inStream) {
    std::vector<UInt8> header;
    if (!Read(kHeaderSize, &header) || !std::equal(kMark, kMark + kMarkSize, header.begin()))
        ThrowNoCapture("it does not begin like one");
    header.erase(header.begin(), header.begin() + kMarkSize);
    const UInt32 version = Taker(header).Take32();
    if (version != kVersion) ThrowNoCapture("its version is " + std::to_string(version));
}

// False at the end of the file.
bool CaptureReader::Read(size_t inSize, std::vector<UInt8>* outBytes) {
    outBytes->resize(inSize);
    mStream.read(reinterpret_cast<char*>(outBytes->data()), static_cast<std::streamsize>(inSize));
    const auto size = static_cast<size_t>(mStream.gcount());
    const UInt64 at = mAt;
    mAt += size;
    if (size == 0 && inSize > 0) return false;
    if (size == inSize) return true;
    ThrowNoCapture("it ends in the middle of what begins at byte " + std::to_string(at));
}

std::optional<CaptureRecord> CaptureReader::Next() {
    const UInt64 start = mAt;
    const std::string place = "the record at byte " + std::to_string(start);
    std::vector<UInt8> bytes;
    if (!Read(kRecordHeaderSize, &bytes)) return {};
    Taker taker(bytes);
    const UInt32 mark = taker.Take32();
    const size_t size = taker.Take32();
    if (mark != kRecordMark || size < kFactsSize || size > kFactsSize + kLargestEvent)
        ThrowNoCapture(place + " is damaged");
    if (!Read(size, &bytes)) ThrowNoCapture("it ends in the middle of " + place);
    auto record = RecordFrom(bytes);
    if (!record) ThrowNoCapture(place + " is damaged");
    return record;
}

}  // namespace cli
