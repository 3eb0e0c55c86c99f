// Which of the objects that met a test are meant: by position, ordinal or span of positions.
#include <random>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/objects/object_model.h"

namespace carbon {
namespace {

SInt32 AnyOf(SInt32 inCount) {
    static std::minstd_rand sRandom{std::random_device{}()};
    return std::uniform_int_distribution<SInt32>(1, inCount)(sRandom);
}

// A position from 1 to the count; nothing when there is none there.
std::optional<SInt32> PositionOf(const Item& inIndex, SInt32 inCount) {
    UInt8 bytes[sizeof(SInt32)] = {};
    if (inIndex.type == typeAbsoluteOrdinal && inIndex.content.size() == sizeof bytes) {
        switch (ReadBigEndian<UInt32>(inIndex.content.data())) {
            case kAEFirst:
                return 1;
            case kAELast:
                return inCount;
            case kAEMiddle:
                return (inCount + 1) / 2;
            case kAEAny:
                return AnyOf(inCount);
            default:
                return std::nullopt;
        }
    }
    if (Deliver(inIndex, Wanted{typeSInt32, nullptr, bytes, sizeof bytes, nullptr}) != noErr)
        return std::nullopt;
    const SInt64 position = ReadBigEndian<SInt32>(bytes);
    const SInt64 fromStart = position < 0 ? inCount + position + 1 : position;
    if (fromStart < 1 || fromStart > inCount) return std::nullopt;
    return SInt32(fromStart);
}

bool MeansAll(const Item& inIndex) {
    return inIndex.type == typeAbsoluteOrdinal && inIndex.content.size() == sizeof(DescType) &&
           ReadBigEndian<UInt32>(inIndex.content.data()) == UInt32(kAEAll);
}

}  // namespace

OSErr Resolver::Select(const Item& inIndex, Matches& ioMatches, Token& outToken) {
    if (MeansAll(inIndex)) return SelectSpan(1, ioMatches.count, false, ioMatches, outToken);
    if (inIndex.type == typeWhoseRange) {
        const auto start = ItemWithKey(inIndex, keyAEWhoseRangeStart);
        const auto stop = ItemWithKey(inIndex, keyAEWhoseRangeStop);
        if (!start || !stop) return errAEImpossibleRange;
        const auto first = PositionOf(*start, ioMatches.count);
        const auto last = PositionOf(*stop, ioMatches.count);
        if (!first || !last) return errAENoSuchObject;
        if (*first > *last) return errAEImpossibleRange;
        return SelectSpan(*first, *last, false, ioMatches, outToken);
    }
    const auto position = PositionOf(inIndex, ioMatches.count);
    if (!position) return errAENoSuchObject;
    return SelectSpan(*position, *position, true, ioMatches, outToken);
}

// Tokens outside the span go back to the application.
OSErr Resolver::SelectSpan(SInt32 inFirst, SInt32 inLast, bool inIsOne, Matches& ioMatches,
                           Token& outToken) {
    if (ioMatches.areMarked) {
        const OSErr result = Callbacks().adjustMarks(inFirst, inLast, ioMatches.token.Get());
        if (result == noErr) outToken.Take(ioMatches.token);
        return result;
    }
    Token chosen;
    Storage& all = *StorageOf(*ioMatches.token.Get());
    if (!inIsOne) *chosen.Out() = {typeAEList, HandleOf(Storage::Empty(Kind::List, typeAEList))};
    for (SInt32 i = 1; i <= ioMatches.count; ++i) {
        const Item item = all.ItemAt(all.PlaceAt(UInt32(i) - 1));
        AEDesc token = DescOf(item);
        if (i < inFirst || i > inLast) {
            AEDisposeToken(&token);
        } else if (inIsOne) {
            *chosen.Out() = token;
        } else {
            StorageOf(*chosen.Get())->Append(typeWildCard, item);
            AEDisposeDesc(&token);
        }
    }
    ioMatches.token.Forget();
    outToken.Take(chosen);
    return noErr;
}

}  // namespace carbon
