// Makes and releases the bytes behind a descriptor, and keeps a form whole while it is changed.
#include "apple_event_manager/data/storage.h"

#include <algorithm>
#include <new>

#include "apple_event_manager/big_endian.h"

namespace carbon {

using namespace wire;

namespace {

// Writes an item's header, content and padding; the bytes must be there.
void WriteItem(UInt8* outBytes, const Item& inItem) {
    const UInt32 size = UInt32(inItem.content.size());
    WriteBigEndian(outBytes + kTypeAt, UInt32(inItem.type));
    WriteBigEndian(outBytes + kKindAt, UInt32(inItem.kind) << 24);
    WriteBigEndian(outBytes + kSizeAt, size);
    if (size == 0) return;
    WriteBigEndian(outBytes + kItemHeader + Padded(size) - kAlignment, UInt32(0));  // the padding
    std::memcpy(outBytes + kItemHeader, inItem.content.data(), size);
}

void CheckSize(UInt64 inSize) {
    if (inSize > kMaximumSize) throw std::bad_alloc();
}

void WriteForm(Buffer& outForm, const Item& inItem) {
    CheckSize(inItem.content.size() + UInt64(kContent));
    outForm.Splice(0, outForm.Size(), kFirstItem + inItem.FormSize());
    UInt8* bytes = outForm.Writable();
    WriteBigEndian(bytes, kMagic);
    WriteItem(bytes + kFirstItem, inItem);
}

}  // namespace

std::unique_ptr<Storage> Storage::OfItem(const Item& inItem) {
    std::unique_ptr<Storage> storage(new Storage(inItem.kind));
    WriteForm(storage->mForm, inItem);
    if (inItem.IsContainer()) storage->AdoptContainer(inItem.depthAtMost);
    return storage;
}

std::unique_ptr<Storage> Storage::OfLeaf(DescType inType, Bytes inData) {
    return OfItem({inType, Kind::Leaf, inData});
}

std::unique_ptr<Storage> Storage::Empty(Kind inKind, DescType inType) {
    static constexpr UInt8 kZeros[kEventHeader] = {};
    constexpr UInt32 kRoomInEvent = 512, kRoomInList = 256;  // for most of them
    const UInt32 size = inKind == Kind::Event ? kEventHeader : kListHeader;
    std::unique_ptr<Storage> storage(new Storage(inKind));
    storage->mForm.Reserve(inKind == Kind::Event ? kRoomInEvent : kRoomInList);
    WriteForm(storage->mForm, {inType, inKind, Bytes(kZeros, size)});
    storage->mDepthAtMost = 1;
    return storage;
}

std::unique_ptr<Storage> Storage::OfForm(Buffer&& inForm, int inDepthAtMost) {
    const Item whole = ReadItem(inForm, kFirstItem);
    std::unique_ptr<Storage> storage(new Storage(whole.kind));
    storage->mForm = std::move(inForm);
    if (whole.IsContainer()) storage->AdoptContainer(inDepthAtMost);
    return storage;
}

// The key of an item, or what else lies before it, has the place of the mark that a form begins
// with; Form() puts that there when somebody wants the form.
std::unique_ptr<Storage> Storage::OfItemIn(Storage& ioContainer, UInt32 inAt) {
    const Item item = ioContainer.ItemAt(inAt);
    const UInt32 at = inAt + ioContainer.KeySize() - kFirstItem;
    std::unique_ptr<Storage> storage(new Storage(item.kind));
    storage->mForm = ioContainer.mForm.Part(at, kFirstItem + item.FormSize());
    if (item.IsContainer()) storage->AdoptContainer(item.depthAtMost);
    return storage;
}

void Storage::AdoptContainer(int inDepthAtMost) {
    mCount = ItemsOf(mKind, Content()).count;
    mDepthAtMost = inDepthAtMost;
}

std::unique_ptr<Storage> Storage::OfExternal(DescType inType, Bytes inData,
                                             AEDisposeExternalUPP inCallback, SInt32 inRefCon) {
    CheckSize(inData.size() + UInt64(kContent));
    auto storage = OfLeaf(inType, {});
    storage->mLoan.reset(new Loan{inData, inCallback, inRefCon});
    return storage;
}

Storage::~Storage() {
    EndLoan();
}

void Storage::EndLoan() {
    if (!mLoan) return;
    const auto loan = std::move(mLoan);
    if (loan->callback) loan->callback(loan->data.data(), Size(loan->data.size()), loan->refCon);
}

Bytes Storage::Form(DescType inType) {
    if (mLoan) {
        WriteForm(mForm, {inType, mKind, mLoan->data});
        EndLoan();
    }
    const UInt8* bytes = mForm.Data();
    const bool isReady = ReadBigEndian<UInt32>(bytes) == kMagic &&
                         ReadBigEndian<UInt32>(bytes + kFirstItem + kTypeAt) == inType;
    if (isReady) return mForm;
    WriteBigEndian(mForm.Writable(), kMagic);
    WriteBigEndian(mForm.Writable() + kFirstItem + kTypeAt, UInt32(inType));
    return mForm;
}

void Storage::ReplaceWithLeaf(DescType inType, Bytes inData) {
    Buffer form;
    WriteForm(form, {inType, Kind::Leaf, inData});
    EndLoan();
    ForgetIndex();
    mFactoring.clear();
    ForgetAllFetched();
    mKind = Kind::Leaf;
    mCount = 0;
    mDepthAtMost = 0;
    mForm = std::move(form);
}

UInt32 Storage::ItemsBegin() const {
    return kContent + (mKind == Kind::Event ? kEventHeader : kListHeader);
}

UInt32 Storage::ItemsEnd() const {
    return mKind == Kind::Event ? kContent + ItemsOf(mKind, Content()).end : mForm.Size();
}

// Puts an item, with its key, in the place of `inOldSize` bytes. The header is left behind.
void Storage::WriteEntry(UInt32 inAt, UInt32 inOldSize, AEKeyword inKey, const Item& inItem) {
    CheckSize(UInt64(mForm.Size()) - inOldSize + kContent + inItem.content.size());
    mForm.Splice(inAt, inOldSize, KeySize() + inItem.FormSize());
    if (inItem.IsContainer()) mDepthAtMost = std::max(mDepthAtMost, inItem.depthAtMost + 1);
    UInt8* entry = mForm.Writable() + inAt;
    if (KeySize() > 0) WriteBigEndian(entry, UInt32(inKey));
    WriteItem(entry + KeySize(), inItem);
}

void Storage::UpdateHeader() {
    UInt8* content = mForm.Writable() + kContent;
    WriteBigEndian(mForm.Writable() + kFirstItem + kSizeAt, UInt32(mForm.Size()) - kContent);
    WriteBigEndian(content, mCount);
}

void Storage::GrowParameters(SInt64 inGrowth) {
    if (mKind != Kind::Event) return;
    UInt8* bytes = mForm.Writable() + kContent + kParameterBytesAt;
    WriteBigEndian(bytes, UInt32(SInt64(ReadBigEndian<UInt32>(bytes)) + inGrowth));
}

}  // namespace carbon
