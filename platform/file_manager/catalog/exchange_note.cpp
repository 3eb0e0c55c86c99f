// Owns the bytes of notes.
#include "file_manager/catalog/exchange_note.h"

#include <cstring>
#include <optional>
#include <type_traits>

namespace carbon {

namespace {

constexpr std::string_view kEnd = "whole";  // what is cut short does not have it

class Writer {
  public:
    void Put(const void* inBytes, size_t inCount) {
        const auto* bytes = static_cast<const char*>(inBytes);
        mBytes.append(bytes, inCount);
    }
    template <typename Number>
    void Put(const Number& inNumber) {
        static_assert(std::is_arithmetic_v<Number>);
        Put(&inNumber, sizeof inNumber);
    }
    void Put(const std::string& inText) {
        Put(UInt32(inText.size()));
        Put(inText.data(), inText.size());
    }
    void Put(const std::optional<SInt64>& inDate) {
        Put(inDate.has_value());
        Put(inDate.value_or(0));
    }
    const std::string& Bytes() const { return mBytes; }

  private:
    std::string mBytes;
};

class Reader {
  public:
    explicit Reader(std::string_view inBytes) : mBytes(inBytes) {}

    void Take(void* outBytes, size_t inCount) {
        mIsWhole = mIsWhole && inCount <= mBytes.size();
        if (!mIsWhole) return;
        std::memcpy(outBytes, mBytes.data(), inCount);
        mBytes.remove_prefix(inCount);
    }
    template <typename Number>
    void Take(Number* outNumber) {
        static_assert(std::is_arithmetic_v<Number>);
        Take(outNumber, sizeof *outNumber);
    }
    void Take(std::string* outText) {
        UInt32 length = 0;
        Take(&length);
        mIsWhole = mIsWhole && length <= mBytes.size();
        if (!mIsWhole) return;
        outText->assign(mBytes.substr(0, length));
        mBytes.remove_prefix(length);
    }
    void Take(std::optional<SInt64>* outDate) {
        UInt8 isKnown = 0;
        SInt64 date = 0;
        Take(&isKnown);
        Take(&date);
        if (isKnown) *outDate = date;
    }
    bool IsAtEnd() const { return mIsWhole && mBytes == kEnd; }

  private:
    std::string_view mBytes;
    bool mIsWhole = true;
};

void PutFile(const ExchangedFile& inFile, Writer* ioWriter) {
    const Metadata& metadata = inFile.metadata;
    ioWriter->Put(inFile.path);
    ioWriter->Put(inFile.device);
    ioWriter->Put(inFile.inode);
    ioWriter->Put(inFile.companion);
    ioWriter->Put(inFile.created);
    ioWriter->Put(metadata.finderInfo, sizeof metadata.finderInfo);
    ioWriter->Put(metadata.extFinderInfo, sizeof metadata.extFinderInfo);
    ioWriter->Put(metadata.facts.created);
    ioWriter->Put(metadata.facts.backedUp);
    ioWriter->Put(metadata.facts.comment);
    ioWriter->Put(UInt8(metadata.facts.isLocked));
}

void TakeFile(Reader* ioReader, ExchangedFile* outFile) {
    Metadata& metadata = outFile->metadata;
    UInt8 isLocked = 0;
    ioReader->Take(&outFile->path);
    ioReader->Take(&outFile->device);
    ioReader->Take(&outFile->inode);
    ioReader->Take(&outFile->companion);
    ioReader->Take(&outFile->created);
    ioReader->Take(metadata.finderInfo, sizeof metadata.finderInfo);
    ioReader->Take(metadata.extFinderInfo, sizeof metadata.extFinderInfo);
    ioReader->Take(&metadata.facts.created);
    ioReader->Take(&metadata.facts.backedUp);
    ioReader->Take(&metadata.facts.comment);
    ioReader->Take(&isLocked);
    metadata.facts.isLocked = isLocked != 0;
}

}  // namespace

std::string BytesOfNote(const ExchangedFiles& inFiles) {
    Writer writer;
    PutFile(inFiles.one, &writer);
    PutFile(inFiles.other, &writer);
    return writer.Bytes() + std::string(kEnd);
}

bool ReadNote(std::string_view inBytes, ExchangedFiles* outFiles) {
    Reader reader(inBytes);
    TakeFile(&reader, &outFiles->one);
    TakeFile(&reader, &outFiles->other);
    return reader.IsAtEnd();
}

}  // namespace carbon
