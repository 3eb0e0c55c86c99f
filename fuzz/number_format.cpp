// The format parser: any format with any symbols, then a number written and a text read in what it
// made. With the system's symbols a format must come back from its canonical text unchanged.
#include <Carbon/Carbon.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

// Takes its bytes from the front; zeros when there are no more.
class Input {
  public:
    Input(const UInt8* inBytes, size_t inSize) : mBytes(inBytes), mSize(inSize) {}

    void Read(void* out, size_t inSize) {
        const size_t size = std::min(inSize, mSize);
        std::memset(out, 0, inSize);
        if (size > 0) std::memcpy(out, mBytes, size);
        mBytes += size;
        mSize -= size;
    }

    void ReadString(Str255 out) {
        Read(out, 1);
        out[0] = UInt8(std::min<size_t>(out[0], mSize));
        Read(out + 1, out[0]);
    }

  private:
    const UInt8* mBytes;
    size_t mSize;
};

NumberParts SystemParts() {
    Handle table = nullptr;
    SInt32 offset = 0, length = 0;
    GetIntlResourceTable(smSystemScript, smNumberPartsTable, &table, &offset, &length);
    NumberParts parts;
    std::memcpy(&parts, *table + offset, sizeof parts);
    return parts;
}

void CheckRoundTrip(const NumFormatString& inFormat, const NumberParts& inParts) {
    Str255 text;
    TripleInt positions;
    if (FormatRecToString(&inFormat, &inParts, text, positions) != fFormatOK) return;
    NumFormatString again;
    if (StringToFormatRec(text, &inParts, &again) != fFormatOK) std::abort();
    if (std::memcmp(&again, &inFormat, sizeof again) != 0) std::abort();
}

void UseFormat(const NumFormatString& inFormat, const NumberParts& inParts,
               const extended80& inNumber, ConstStr255Param inText) {
    Str255 written;
    extended80 read;
    static_cast<void>(ExtendedToString(&inNumber, &inFormat, &inParts, written));
    static_cast<void>(StringToExtended(written, &inFormat, &inParts, &read));
    static_cast<void>(StringToExtended(inText, &inFormat, &inParts, &read));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inBytes, size_t inSize) {
    Input input(inBytes, inSize);
    const NumberParts system = SystemParts();
    UInt8 kind;
    extended80 number;
    Str255 format, text;
    input.Read(&kind, 1);
    input.Read(&number, sizeof number);
    input.ReadString(format);
    input.ReadString(text);

    NumFormatString record;
    NumberParts parts = system;
    if (kind & 1) input.Read(&parts, sizeof parts);
    static_cast<void>(StringToFormatRec(format, &parts, &record));
    if (!(kind & 1)) CheckRoundTrip(record, parts);
    if (kind & 2) input.Read(&record, sizeof record);
    UseFormat(record, parts, number, text);
    return 0;
}
