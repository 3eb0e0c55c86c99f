// Keeps lists that would exhaust the reader's stack or memory away from it.
#include "core_foundation/property_list.h"

namespace carbon {

namespace {

constexpr std::string_view kBinaryMagic = "bplist00";
constexpr size_t kTrailerSize = 32;

// Where the markup that begins at inStart ends, behind its '>'; npos when it does not.
size_t EndOfMarkup(std::string_view inText, size_t inStart) {
    const auto rest = inText.substr(inStart);
    const auto behind = [&](std::string_view inEnd) {
        const size_t end = inText.find(inEnd, inStart);
        return end == inText.npos ? end : end + inEnd.size();
    };
    if (rest.starts_with("<!--")) return behind("-->");
    if (rest.starts_with("<![CDATA[")) return behind("]]>");
    return behind(">");
}

// A binary list as far as its structure goes. Every number is checked before it is used.
class BinaryList {
  public:
    explicit BinaryList(std::string_view inBytes) : mBytes(inBytes) {}

    bool IsHarmless() {
        if (mBytes.size() < kBinaryMagic.size() + kTrailerSize) return false;
        const size_t trailer = mBytes.size() - kTrailerSize;
        mOffsetSize = static_cast<UInt8>(mBytes[trailer + 6]);
        mReferenceSize = static_cast<UInt8>(mBytes[trailer + 7]);
        mCount = Number(trailer + 8, 8);
        mTable = Number(trailer + 24, 8);
        const bool isSane = mOffsetSize >= 1 && mOffsetSize <= 8 && mReferenceSize >= 1 &&
                            mReferenceSize <= 8 && mTable <= trailer &&
                            mCount <= (trailer - mTable) / mOffsetSize;
        return isSane && Visit(Number(trailer + 16, 8), 0);
    }

  private:
    UInt64 Number(size_t inStart, size_t inSize) const {
        UInt64 number = 0;
        for (size_t i = 0; i < inSize; ++i) {
            number = number << 8 | static_cast<UInt8>(mBytes[inStart + i]);
        }
        return number;
    }

    bool Visit(UInt64 inObject, int inDepth) {
        if (inObject >= mCount || inDepth > kDeepestPropertyList) return false;
        if (++mVisited > kMostPropertyListNodes) return false;
        const UInt64 at = Number(mTable + inObject * mOffsetSize, mOffsetSize);
        if (at < kBinaryMagic.size() || at >= mTable) return false;
        const auto marker = static_cast<UInt8>(mBytes[at]);
        const int kind = marker >> 4;
        const bool isContainer = kind == 0xA || kind == 0xC || kind == 0xD;
        return !isContainer || VisitParts(at, kind == 0xD ? 2 : 1, inDepth);
    }

    bool VisitParts(size_t inAt, UInt64 inPartsAPiece, int inDepth) {
        UInt64 count = static_cast<UInt8>(mBytes[inAt]) & 0x0F;
        size_t start = inAt + 1;
        if (count == 0x0F) {
            const size_t size = start < mTable ? size_t{1} << (mBytes[start] & 0x0F) : 9;
            if (size > 8 || size > mTable - start - 1) return false;
            count = Number(start + 1, size);
            start += 1 + size;
        }
        if (count > (mTable - start) / (mReferenceSize * inPartsAPiece)) return false;
        for (UInt64 i = 0; i < count * inPartsAPiece; ++i) {
            if (!Visit(Number(start + i * mReferenceSize, mReferenceSize), inDepth + 1)) {
                return false;
            }
        }
        return true;
    }

    std::string_view mBytes;
    size_t mOffsetSize = 0, mReferenceSize = 0, mVisited = 0;
    UInt64 mCount = 0, mTable = 0;
};

}  // namespace

bool IsHarmlessXML(std::string_view inBytes) {
    int depth = 0;
    for (size_t at = inBytes.find('<'); at != inBytes.npos; at = inBytes.find('<', at)) {
        const size_t end = EndOfMarkup(inBytes, at);
        if (end == inBytes.npos) return false;
        const char first = inBytes[at + 1];
        if (first == '/') {
            --depth;
        } else if (first != '!' && first != '?' && inBytes[end - 2] != '/') {
            ++depth;
        }
        if (depth > kDeepestPropertyList) return false;
        at = end;
    }
    return true;
}

bool IsHarmlessBinary(std::string_view inBytes) {
    return inBytes.starts_with(kBinaryMagic) && BinaryList(inBytes).IsHarmless();
}

}  // namespace carbon
