// Owns finding the dates and checksums of a disc's making.
#include "support/DiscBytes.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr size_t kBlock = 2048, kFirstDescriptor = 16, kSum = 16;
constexpr size_t kVolumeDates = 813, kVolumeDate = 17, kVolumeDateCount = 4;
constexpr size_t kRootDate = 156 + 18, kDate = 7;

class Image {
  public:
    explicit Image(std::string&& inBytes) : mBytes(std::move(inBytes)) {}

    bool BlankMaking() {
        const size_t last = LastDescriptor();
        if (last == 0) return false;
        // What the volume says, and the root folder, which is made some moments earlier.
        const size_t first = kFirstDescriptor * kBlock;
        const std::string volumeDate = ShortDate(first + kVolumeDates);
        const std::string rootDate = mBytes.substr(first + kRootDate, kDate);
        for (size_t at = first; at < last; at += kBlock)
            Blank(at + kVolumeDates, kVolumeDateCount * kVolumeDate);
        BlankAll(rootDate);
        BlankAll(volumeDate);
        return BlankTag("libisofs_sb_checksum_tag_v1 ") != 0 &&
               BlankTag("libisofs_tree_checksum_tag_v1 ") != 0 &&
               BlankList(BlankTag("libisofs_checksum_tag_v1 "));
    }

    std::string Take() { return std::move(mBytes); }
    size_t Blanked() const { return mBlanked; }

  private:
    // The descriptor that ends them; 0 when there is none.
    size_t LastDescriptor() const {
        for (size_t at = kFirstDescriptor * kBlock; at + kBlock <= mBytes.size(); at += kBlock) {
            if (mBytes.compare(at + 1, 5, "CD001") != 0) return 0;
            if (mBytes[at] == char(0xFF)) return at;
        }
        return 0;
    }

    // Of "YYYYMMDDhhmmsscc" and the zone: years since 1900, then a byte for each.
    std::string ShortDate(size_t inAt) const {
        std::string date(1, char(std::stoi(mBytes.substr(inAt, 4)) - 1900));
        for (size_t i = 4; i < 14; i += 2) date += char(std::stoi(mBytes.substr(inAt + i, 2)));
        return date + mBytes[inAt + kVolumeDate - 1];
    }

    void Blank(size_t inAt, size_t inSize) {
        std::fill_n(mBytes.begin() + std::ptrdiff_t(inAt), inSize, '\0');
        mBlanked += inSize;
    }

    void BlankAll(const std::string& inDate) {
        for (size_t at = 0; (at = mBytes.find(inDate, at)) != std::string::npos; at += kDate)
            Blank(at, kDate);
    }

    // The sum that it gives and that of the tag itself, in hexadecimal digits. Where it is, or 0.
    size_t BlankTag(const std::string& inName) {
        const size_t at = mBytes.find(inName + "pos=");
        if (at == std::string::npos || at % kBlock != 0) return 0;
        for (const char* word : {" md5=", " self="}) {
            const size_t sum = mBytes.find(word, at);
            if (sum >= at + kBlock) return 0;
            Blank(sum + std::string(word).size(), 2 * kSum);
        }
        return at;
    }

    // The list fills the block before the last tag; the end of that block is empty.
    bool BlankList(size_t inTag) {
        if (inTag < kBlock) return false;
        const size_t first = inTag - kBlock, used = mBytes.find_last_not_of('\0', inTag - 1);
        if (used < first + kSum) return false;
        Blank(first, kSum);
        Blank(first + (used - first) / kSum * kSum, kSum);
        return true;
    }

    std::string mBytes;
    size_t mBlanked = 0;
};

}  // namespace

std::string WithoutMaking(std::string inImage, size_t* outBlanked) {
    Image image(std::move(inImage));
    const bool isSound = image.BlankMaking();
    *outBlanked = image.Blanked();
    return isSound ? image.Take() : std::string();
}
