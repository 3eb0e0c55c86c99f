// The file system that goes onto a disc, and the stream of bytes it becomes. Engine thread only.
#pragma once

#include <Carbon/MacTypes.h>

#include <functional>
#include <memory>
#include <string>

#include "burn/SourceTree.h"
#include "burn/SourceWatcher.h"

struct Iso_Image;
struct burn_source;

namespace recorder {

struct ImageSettings {
    std::string volumeName;  // UTF-8, not empty
    bool hfsPlus = false;  // beside ISO 9660 level 3, Rock Ridge and Joliet, which are always there
};

// The bytes of a disc, in order. Reading them is what reads the sources.
class ImageStream {
  public:
    virtual ~ImageStream() = default;
    virtual UInt64 Size() const = 0;  // a multiple of 2048
    // Exactly `inSize` bytes, a multiple of 2048 within what is left; throws BurnFailure.
    virtual void Read(UInt8* outData, size_t inSize) = 0;
};

class DiscImage {
  public:
    // `inKeepGoing` is asked now and then; false throws BurnCancelled. The watcher outlives the
    // image.
    DiscImage(const SourceTree& inTree, const ImageSettings& inSettings,
              const SourceWatcher& inWatcher, const std::function<bool()>& inKeepGoing);
    ~DiscImage();
    DiscImage(const DiscImage&) = delete;
    DiscImage& operator=(const DiscImage&) = delete;

    // Once. libisofs begins to read at once, as far ahead as its buffer reaches. Ends before the
    // image does.
    std::unique_ptr<ImageStream> Open();

  private:
    Iso_Image* mImage = nullptr;
    ImageSettings mSettings;
    const SourceWatcher& mWatcher;
};

}  // namespace recorder
