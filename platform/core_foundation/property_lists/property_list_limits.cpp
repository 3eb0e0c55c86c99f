// Keeps lists that would exhaust the reader's stack or memory away from it.
#include <optional>

#include "core_foundation/property_lists/property_list.h"

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
        size_t at = Number(mTable + inObject * mOffsetSize, mOffsetSize);
        if (at < kBinaryMagic.size() || at >= mTable) return false;
        switch (static_cast<UInt8>(mBytes[at]) >> 4) {
            case 0x4:
                return UnitCount(&at, 1).has_value();
            case 0x5:
                return IsHarmlessText(at, 1);
            case 0x6:
                return IsHarmlessText(at, 2);
            case 0xA:
            case 0xC:
                return VisitParts(at, 1, inDepth);
            case 0xD:
                return VisitParts(at, 2, inDepth);
            default:
                return true;
        }
    }

    // How many parts the object at *ioAt has; moves there. Nothing when they would not fit.
    std::optional<UInt64> PartCount(size_t* ioAt, size_t inPartSize) const {
        UInt64 count = static_cast<UInt8>(mBytes[(*ioAt)++]) & 0x0F;
        if (count == 0x0F) {
            const size_t size = *ioAt < mTable ? size_t{1} << (mBytes[*ioAt] & 0x0F) : 9;
            if (size > 8 || size > mTable - *ioAt - 1) return std::nullopt;
            count = Number(*ioAt + 1, size);
            *ioAt += 1 + size;
        }
        return count <= (mTable - *ioAt) / inPartSize ? std::optional(count) : std::nullopt;
    }

    bool VisitParts(size_t inAt, size_t inReferencesAPiece, int inDepth) {
        const auto count = PartCount(&inAt, mReferenceSize * inReferencesAPiece);
        if (!count) return false;
        for (UInt64 i = 0; i < *count * inReferencesAPiece; ++i) {
            if (!Visit(Number(inAt + i * mReferenceSize, mReferenceSize), inDepth + 1)) {
                return false;
            }
        }
        return true;
    }

    // The units of a text or data object that *ioAt moves to; nothing when all that the list's
    // references add up to is too much.
    std::optional<UInt64> UnitCount(size_t* ioAt, size_t inUnitSize) {
        const auto count = PartCount(ioAt, inUnitSize);
        if (count) mContents += *count * inUnitSize;
        return mContents <= kMostPropertyListBytes ? count : std::nullopt;
    }

    // libplist stops the program for a text with a zero in it.
    bool IsHarmlessText(size_t inAt, size_t inUnitSize) {
        const auto count = UnitCount(&inAt, inUnitSize);
        for (UInt64 i = 0; count && i < *count; ++i) {
            if (Number(inAt + i * inUnitSize, inUnitSize) == 0) return false;
        }
        return count.has_value();
    }

    std::string_view mBytes;
    size_t mOffsetSize = 0, mReferenceSize = 0, mVisited = 0, mContents = 0;
    UInt64 mCount = 0, mTable = 0;
};

}  // namespace

bool IsHarmlessXML(std::string_view inBytes) {
    if (inBytes.find('\0') != inBytes.npos) return false;
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
