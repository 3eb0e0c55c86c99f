// Memory that begins on a page, into and out of which drives can move data directly.
#pragma once

#include <Carbon/MacTypes.h>

#include <cstdlib>
#include <memory>

#include "burn/BurnFailure.h"

namespace recorder {

class PageBuffer {
  public:
    static constexpr size_t kPage = 4096;

    // `inSize` is a multiple of kPage. Throws memFullErr.
    explicit PageBuffer(size_t inSize)
        : mData(static_cast<UInt8*>(std::aligned_alloc(kPage, inSize)), std::free) {
        if (!mData) throw BurnFailure(memFullErr, "There is not enough memory.");
    }
    UInt8* Data() const { return mData.get(); }

  private:
    std::unique_ptr<UInt8, decltype(&std::free)> mData;
};

}  // namespace recorder
