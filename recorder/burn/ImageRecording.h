// Discs that are files, and discs that are only pretended.
#pragma once

#include <sys/stat.h>

#include <memory>

#include "burn/Drive.h"
#include "burn/WorkFile.h"

namespace recorder {

class ImageRecording : public Recording {
  public:
    struct Places {
        std::string blank;  // used up when the disc is finished
        std::string goal;   // where the image goes
    };

    // inCapacity 0 is unlimited.
    ImageRecording(const Places& inPlaces, bool inReplace, UInt64 inCapacity);

    void Reserve(UInt64 inBytes) override;
    void Write(ImageStream& inStream, const JobContext& inContext) override;
    void PrepareReadBack() override;
    void ReadBack(UInt64 inOffset, UInt8* outData, size_t inSize) override;
    std::string Finish() override;

  private:
    bool FallsBack(int& ioFd, int inErrno);
    void UseUpBlank(const struct stat& inImage) const;
    void WriteTo(int inFd, const UInt8* inData, size_t inSize, UInt64 inOffset);
    void WritePiece(const UInt8* inData, size_t inSize, UInt64 inOffset);
    void PushToDisk(UInt64 inOffset);
    void PushWindow(UInt64 inOffset, unsigned inHow);
    void ReadFrom(int inFd, UInt64 inOffset, UInt8* outData, size_t inSize);

    Places mPlaces;
    UInt64 mCapacity;
    WorkFile mFile;
    carbon::UniqueFd mDirect;  // the same file past the page cache; may stay empty
};

// Everything but the writing: it reads every source and leaves nothing behind.
class SimulatedRecording : public Recording {
  public:
    // Throws what keeps a real one from being begun in this folder.
    SimulatedRecording(const std::string& inFolder, UInt64 inCapacity);

    void Reserve(UInt64 inBytes) override;
    void Write(ImageStream& inStream, const JobContext& inContext) override;
    void PrepareReadBack() override;
    void ReadBack(UInt64 inOffset, UInt8* outData, size_t inSize) override;
    std::string Finish() override;

  private:
    std::string mFolder;
    UInt64 mCapacity;
};

}  // namespace recorder
