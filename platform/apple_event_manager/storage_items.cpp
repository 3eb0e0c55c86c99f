// Items inside a form: finding them by index and by key, adding, replacing and removing them.
#include <algorithm>

#include "apple_event_manager/big_endian.h"
#include "apple_event_manager/limits.h"
#include "apple_event_manager/storage.h"

namespace carbon {

using namespace wire;

namespace {

constexpr UInt32 kFewItems = 16;  // so many keys are compared one by one

}  // namespace

Storage::Index& Storage::NeedIndex() {
    if (mIndex) return *mIndex;
    auto index = std::make_unique<Index>();
    index->offsets.reserve(mCount);
    for (UInt32 at = ItemsBegin(), i = 0; i < mCount; ++i, at = EndOf(at))
        index->offsets.push_back(at);
    mIndex = std::move(index);
    return *mIndex;
}

void Storage::NeedKeys() {
    Index& index = NeedIndex();
    if (index.hasKeys) return;
    for (UInt32 i = 0; i < mCount; ++i) index.keys.emplace(KeyAt(index.offsets[i]), i);
    index.hasKeys = true;
}

UInt32 Storage::PlaceAt(UInt32 inPosition) {
    return NeedIndex().offsets[inPosition];
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
    if (mIndex) mIndex->offsets.push_back(at);
    try {
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
    if (inPlace.position < mFetched.size()) mFetched[inPlace.position] = false;
    if (!mIndex || growth == 0) return;
    for (UInt32 i = inPlace.position + 1; i < mCount; ++i)
        mIndex->offsets[i] = UInt32(mIndex->offsets[i] + growth);
}

void Storage::Erase(const Place& inPlace) {
    const UInt32 oldSize = EndOf(inPlace.at) - inPlace.at;
    mForm.Splice(inPlace.at, oldSize, 0);
    GrowParameters(-SInt64(oldSize));
    --mCount;
    UpdateHeader();
    if (inPlace.position < mFetched.size()) mFetched.erase(mFetched.begin() + inPlace.position);
    if (!mIndex) return;
    auto& offsets = mIndex->offsets;
    offsets.erase(offsets.begin() + inPlace.position);
    for (UInt32 i = inPlace.position; i < mCount; ++i) offsets[i] -= oldSize;
    mIndex->keys.clear();
    mIndex->hasKeys = false;
}

void Storage::Clear() {
    const UInt32 begin = ItemsBegin(), size = ItemsEnd() - begin;
    mForm.Splice(begin, size, 0);
    GrowParameters(-SInt64(size));
    mCount = 0;
    UpdateHeader();
    mFetched.clear();
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
    const UInt32 at = found ? *found : UInt32(mForm.Size());
    WriteEntry(at, found ? EndOf(at) - at : 0, inKey, inItem);
    UInt8* count = mForm.Data() + kContent + kAttributeCountAt;
    if (!found) WriteBigEndian(count, ReadBigEndian<UInt32>(count) + 1);
    UpdateHeader();
}

void Storage::MarkFetched(UInt32 inPosition) {
    if (mKind != Kind::Event) return;
    if (mFetched.size() <= inPosition) mFetched.resize(inPosition + 1);
    mFetched[inPosition] = true;
}

bool Storage::IsFetched(UInt32 inPosition) const {
    return inPosition < mFetched.size() && mFetched[inPosition];
}

}  // namespace carbon
