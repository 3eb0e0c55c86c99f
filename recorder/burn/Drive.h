// A thing that takes discs and writes them: a burner, a folder of images, a script in a test.
// Engine thread only, unless said.
#pragma once

#include <Carbon/MacTypes.h>

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>

#include "burn/BurnFailure.h"
#include "burn/DiscImage.h"
#include "burn/JobProgress.h"

namespace recorder {

// Media information: the kind of medium in the low byte, and flags. 0 means nothing usable.
enum : SInt32 {
    kMediumCdR = 1,
    kMediumCdRw = 2,
    kMediumDvdR = 3,
    kMediumDvdPlusR = 4,
    kMediumDvdRw = 5,
    kMediumDvdPlusRw = 6,
    kMediumDvdRam = 7,
    kMediumBdR = 8,
    kMediumBdRe = 9,
    kMediumOther = 10,
    kMediumImage = 127,
    kMediumBlank = 0x100,
    kMediumAppendable = 0x200,
    kMediumRewritable = 0x400
};

struct DriveInfo {
    std::string id;    // a device, or the folder of an image drive
    std::string name;  // for people
    bool isBurner = false;
    SInt32 mediaInfo = 0;
    UInt64 space = 0;  // bytes that can be written
};

struct DiscGoal {
    std::string volumeName;
    std::string outputPath;  // absolute; empty: the drive chooses. Image drives only
    bool replace = false;
    bool simulate = false;
    bool eject = true;
};

// What everybody who works on a job needs: where to say how far it is, and whether to stop.
struct JobContext {
    JobProgress& progress;
    const std::atomic<bool>& stop;

    void CheckStop() const {
        if (stop.load()) throw BurnCancelled();
    }
};

// One disc in the making. Destroyed before Finish() has returned, it leaves nothing behind, as far
// as the medium allows. Everything throws BurnFailure.
class Recording {
  public:
    static constexpr size_t kChunk = 64 * 1024;

    virtual ~Recording() = default;
    // Makes sure that the disc will fit. dskFulErr when it will not.
    virtual void Reserve(UInt64 inBytes) = 0;
    // Takes the whole stream, in pieces of kChunk bytes (the last one may be shorter), down to the
    // medium itself.
    virtual void Write(ImageStream& inStream, const JobContext& inContext) = 0;
    // From the medium, not from a cache, as far as the system lets us.
    virtual void PrepareReadBack() = 0;
    virtual void ReadBack(UInt64 inOffset, UInt8* outData, size_t inSize) = 0;
    // Gives the disc its final name, ejects it if so asked at the beginning. The path of the image,
    // or nothing for a burner.
    virtual std::string Finish() = 0;
};

class Drive {
  public:
    virtual ~Drive() = default;
    virtual DriveInfo Probe() = 0;
    // True when a blank disc is in the drive. A drive that can get one by itself does; others wait
    // for people.
    virtual bool HasBlankDisc() = 0;
    virtual void Eject() = 0;
    virtual std::unique_ptr<Recording> Begin(const DiscGoal& inGoal) = 0;
};

}  // namespace recorder
