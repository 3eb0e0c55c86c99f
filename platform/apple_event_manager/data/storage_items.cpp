// Items inside a form: finding them by index and by key, adding, replacing and removing them.
#include <algorithm>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/data/storage.h"
#include "apple_event_manager/limits.h"

namespace carbon {

using namespace wire;

namespace {

constexpr UInt32 kFewItems = 16;  // so many keys are compared one by one

}  // namespace

// A reader who goes from item to item walks over them once, while they are at hand.
Storage::Index& Storage::IndexUpTo(UInt32 inPosition) {
    if (!mIndex) {
        mIndex = std::make_unique<Index>();
        mIndex->offsets.push_back(ItemsBegin());
    }
    auto& offsets = mIndex->offsets;
    while (offsets.size() <= inPosition) offsets.push_back(EndOf(offsets.back()));
    return *mIndex;
}

void Storage::NeedKeys() {
    Index& index = IndexUpTo(mCount - 1);
    if (index.hasKeys) return;
    for (UInt32 i = 0; i < mCount; ++i) index.keys.emplace(KeyAt(index.offsets[i]), i);
    index.hasKeys = true;
}

UInt32 Storage::PlaceAt(UInt32 inPosition) {
    if (mIndex && inPosition < mIndex->offsets.size()) return mIndex->offsets[inPosition];
    return IndexUpTo(inPosition).offsets[inPosition];
}

AEKeyword Storage::KeyAt(UInt32 inAt) const {
    return KeySize() > 0 ? ReadBigEndian<UInt32>(mForm.Data() + inAt) : UInt32(typeWildCard);
}

std::optional<Place> Storage::Find(AEKeyword inKey) {
    if (mCount > kFewItems) {
        NeedKeys();
        const auto found = mIndex->keys.find(inKey);
        if (found == mIndex->keys.end()) return std::nullopt;
        return Place{found->second, mIndex->offsets[found->second]};
    }
    for (UInt32 at = ItemsBegin(), i = 0; i < mCount; ++i, at = EndOf(at))
        if (KeyAt(at) == inKey) return Place{i, at};
    return std::nullopt;
}

void Storage::Append(AEKeyword inKey, const Item& inItem) {
    const UInt32 at = ItemsEnd();
    try {
        if (mIndex && mIndex->offsets.size() == mCount) mIndex->offsets.push_back(at);
        if (mIndex && mIndex->hasKeys) mIndex->keys.emplace(inKey, mCount);
        WriteEntry(at, 0, inKey, inItem);
    } catch (...) {
        ForgetIndex();
        throw;
    }
    GrowParameters(SInt64(KeySize()) + inItem.FormSize());
    ++mCount;
    UpdateHeader();
}

void Storage::Replace(const Place& inPlace, const Item& inItem) {
    const UInt32 oldSize = EndOf(inPlace.at) - inPlace.at;
    const AEKeyword key = KeyAt(inPlace.at);
    WriteEntry(inPlace.at, oldSize, key, inItem);
    const SInt64 growth = SInt64(KeySize()) + inItem.FormSize() - oldSize;
    GrowParameters(growth);
    UpdateHeader();
    ForgetFetched(inPlace.position);
    if (!mIndex || growth == 0) return;
    auto& offsets = mIndex->offsets;
    for (size_t i = inPlace.position + size_t{1}; i < offsets.size(); ++i)
        offsets[i] = UInt32(offsets[i] + growth);
}

void Storage::Erase(const Place& inPlace) {
    const UInt32 oldSize = EndOf(inPlace.at) - inPlace.at;
    mForm.Splice(inPlace.at, oldSize, 0);
    GrowParameters(-SInt64(oldSize));
    --mCount;
    UpdateHeader();
    EraseFetched(inPlace.position);
    if (!mIndex) return;
    auto& offsets = mIndex->offsets;
    if (mCount == 0 || inPlace.position >= offsets.size()) return ForgetIndex();
    offsets.erase(offsets.begin() + inPlace.position);
    for (size_t i = inPlace.position; i < offsets.size(); ++i) offsets[i] -= oldSize;
    if (offsets.empty()) return ForgetIndex();
    mIndex->keys.clear();
    mIndex->hasKeys = false;
}

void Storage::Clear() {
    const UInt32 begin = ItemsBegin(), size = ItemsEnd() - begin;
    mForm.Splice(begin, size, 0);
    GrowParameters(-SInt64(size));
    mCount = 0;
    UpdateHeader();
    ForgetAllFetched();
    ForgetIndex();
}

bool Storage::FitsNesting(const Item& inItem) {
    return !inItem.IsContainer() || inItem.depthAtMost < kMaximumNesting ||
           DepthOf(inItem) < kMaximumNesting;
}

bool Storage::FitsFactoring(const Item& inItem) const {
    if (mFactoring.empty()) return true;
    UInt32 common[2] = {};
    std::memcpy(common, mFactoring.data(), std::min(mFactoring.size(), sizeof common));
    if (inItem.type != common[0]) return false;
    if (mFactoring.size() < sizeof common) return true;
    const auto prefix = Bytes(mFactoring).subspan(sizeof common);
    return inItem.content.size() == common[1] && prefix.size() <= inItem.content.size() &&
           std::equal(prefix.begin(), prefix.end(), inItem.content.begin());
}

std::optional<UInt32> Storage::FindAttribute(AEKeyword inKey) const {
    const Section section = AttributesOf(Content());
    const UInt8* form = mForm.Data();
    UInt32 at = kContent + section.begin;
    // Asked a dozen times for every event that is sent: the sizes alone are read on the way.
    for (UInt32 i = 0; i < section.count; ++i) {
        if (ReadBigEndian<UInt32>(form + at) == inKey) return at;
        const UInt32 size = ReadBigEndian<UInt32>(form + at + wire::kKeySize + wire::kSizeAt);
        at += wire::kKeySize + wire::kItemHeader + wire::Padded(size);
    }
    return std::nullopt;
}

void Storage::PutAttribute(AEKeyword inKey, const Item& inItem) {
    const auto found = FindAttribute(inKey);
    if (!found) return AddAttribute(inKey, inItem);
    WriteEntry(*found, EndOf(*found) - *found, inKey, inItem);
    UpdateHeader();
}

void Storage::AddAttribute(AEKeyword inKey, const Item& inItem) {
    WriteEntry(mForm.Size(), 0, inKey, inItem);
    UInt8* count = mForm.Writable() + kContent + kAttributeCountAt;
    WriteBigEndian(count, ReadBigEndian<UInt32>(count) + 1);
    UpdateHeader();
}

// The first parameters, which nearly all events have no more than, are kept without memory of
// their own.
void Storage::MarkFetched(UInt32 inPosition) {
    if (mKind != Kind::Event) return;
    if (inPosition < kFewParameters) {
        mFetchedFew |= UInt64{1} << inPosition;
        return;
    }
    const UInt32 position = inPosition - kFewParameters;
    if (mFetchedMore.size() <= position) mFetchedMore.resize(position + 1);
    mFetchedMore[position] = true;
}

bool Storage::IsFetched(UInt32 inPosition) const {
    if (inPosition < kFewParameters) return (mFetchedFew >> inPosition & 1) != 0;
    const UInt32 position = inPosition - kFewParameters;
    return position < mFetchedMore.size() && mFetchedMore[position];
}

void Storage::ForgetFetched(UInt32 inPosition) {
    if (inPosition < kFewParameters)
        mFetchedFew &= ~(UInt64{1} << inPosition);
    else if (inPosition - kFewParameters < mFetchedMore.size())
        mFetchedMore[inPosition - kFewParameters] = false;
}

// What comes behind an erased parameter moves up by one.
void Storage::EraseFetched(UInt32 inPosition) {
    if (inPosition >= kFewParameters) {
        const UInt32 position = inPosition - kFewParameters;
        if (position < mFetchedMore.size()) mFetchedMore.erase(mFetchedMore.begin() + position);
        return;
    }
    const UInt64 before = (UInt64{1} << inPosition) - 1;
    const bool next = IsFetched(kFewParameters);
    mFetchedFew = (mFetchedFew & before) | (mFetchedFew >> 1 & ~before);
    if (next) mFetchedFew |= UInt64{1} << (kFewParameters - 1);
    if (!mFetchedMore.empty()) mFetchedMore.erase(mFetchedMore.begin());
}

}  // namespace carbon
