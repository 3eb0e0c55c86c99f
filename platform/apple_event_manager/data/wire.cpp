// Reads flattened bytes: the checks that bytes from outside must pass, and the way through them.
#include "apple_event_manager/data/wire.h"

#include <algorithm>
#include <array>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/limits.h"

namespace carbon {

using namespace wire;

Section ItemsOf(Kind inKind, Bytes inContent) {
    const UInt8* content = inContent.data();
    const UInt32 count = ReadBigEndian<UInt32>(content);
    if (inKind != Kind::Event)
        return {count, kListHeader, UInt32(inContent.size()),
                inKind == Kind::Record ? kKeySize : 0};
    const UInt32 bytes = ReadBigEndian<UInt32>(content + kParameterBytesAt);
    return {count, kEventHeader, kEventHeader + bytes, kKeySize};
}

Section AttributesOf(Bytes inEventContent) {
    const UInt32 begin = ItemsOf(Kind::Event, inEventContent).end;
    return {ReadBigEndian<UInt32>(inEventContent.data() + kAttributeCountAt), begin,
            UInt32(inEventContent.size()), kKeySize};
}

namespace {

// One section that is being walked; the others wait in a stack of fixed depth.
struct Walk {
    UInt32 at;
    UInt32 end;
    UInt32 left;
    UInt32 keySize;
    int nesting;  // containers around these items
};

// Walks every item once. Sections never overlap, so the time is linear in the bytes.
class Checker {
  public:
    explicit Checker(Bytes inBytes) : mBytes(inBytes) {}

    bool CheckWhole(UInt32 inAt) { return Push({inAt, UInt32(mBytes.size()), 1, 0, 0}) && Run(); }
    bool CheckContent(Kind inKind) { return Enter(inKind, 0, UInt32(mBytes.size()), 1) && Run(); }
    int Deepest() const { return mDeepest; }

  private:
    static constexpr size_t kAhead = 1024;

    // One place for the outermost item and two for each container: an event has two sections.
    static constexpr size_t kPlaces = 2 * kMaximumNesting + 1;

    bool Run() {
        while (mDepth > 0) {
            Walk& top = mStack[mDepth - 1];
            if (top.left > 0) {
                if (!Step(top)) return false;
            } else {
                if (top.at != top.end) return false;
                --mDepth;
            }
        }
        return true;
    }

    bool Push(const Walk& inWalk) {
        if (inWalk.nesting > kMaximumNesting) return false;
        mDeepest = std::max(mDeepest, inWalk.nesting);
        mStack[mDepth++] = inWalk;
        return true;
    }

    bool Step(Walk& ioWalk) {
        const UInt32 room = ioWalk.end - ioWalk.at;
        if (room < ioWalk.keySize + kItemHeader) return false;
        const UInt32 at = ioWalk.at + ioWalk.keySize;
        const UInt8* header = mBytes.data() + at;
        // Each size says where the next one is, so that the processor would wait for every one.
        __builtin_prefetch(mBytes.data() + std::min(at + kAhead, mBytes.size()));
        const UInt32 size = ReadBigEndian<UInt32>(header + kSizeAt);
        const UInt32 space = room - ioWalk.keySize - kItemHeader;
        if (size > space || Padded(size) > space) return false;
        if (!CheckKind(header) || !CheckPadding(at + kItemHeader, size)) return false;
        ioWalk.at = at + kItemHeader + Padded(size);
        --ioWalk.left;
        return Enter(Kind(header[kKindAt]), at + kItemHeader, size, ioWalk.nesting + 1);
    }

    static bool CheckKind(const UInt8* inHeader) {
        return ReadBigEndian<UInt32>(inHeader + kKindAt) <= UInt32(Kind::Event) << 24 &&
               (ReadBigEndian<UInt32>(inHeader + kKindAt) & 0xFFFFFF) == 0;
    }

    bool CheckPadding(UInt32 inContent, UInt32 inSize) const {
        for (UInt32 i = inSize; i < Padded(inSize); ++i)
            if (mBytes[inContent + i] != 0) return false;
        return true;
    }

    bool Enter(Kind inKind, UInt32 inContent, UInt32 inSize, int inNesting) {
        if (inKind == Kind::Leaf) return true;
        const UInt32 headerSize = inKind == Kind::Event ? kEventHeader : kListHeader;
        if (inSize < headerSize || inSize % kAlignment != 0) return false;
        const Bytes content = mBytes.subspan(inContent, inSize);
        if (inKind == Kind::Event) {
            const auto bytes = ReadBigEndian<UInt32>(content.data() + kParameterBytesAt);
            if (bytes > inSize - kEventHeader) return false;
            if (!PushSection(inContent, AttributesOf(content), inNesting)) return false;
        }
        return PushSection(inContent, ItemsOf(inKind, content), inNesting);
    }

    bool PushSection(UInt32 inContent, const Section& inSection, int inNesting) {
        return Push({inContent + inSection.begin, inContent + inSection.end, inSection.count,
                     inSection.keySize, inNesting});
    }

    Bytes mBytes;
    std::array<Walk, kPlaces> mStack;
    size_t mDepth = 0;
    int mDeepest = 0;
};

}  // namespace

bool CheckForm(Bytes inBytes, int* outDepth) {
    if (inBytes.size() < kContent || inBytes.size() > kMaximumSize) return false;
    Checker checker(inBytes);
    if (ReadBigEndian<UInt32>(inBytes.data()) != kMagic || !checker.CheckWhole(kFirstItem))
        return false;
    if (outDepth) *outDepth = checker.Deepest();
    return true;
}

int DepthOf(const Item& inItem) {
    Checker checker(inItem.content);
    checker.CheckContent(inItem.kind);
    return checker.Deepest();
}

}  // namespace carbon
