// Makes and releases the bytes behind a descriptor, and keeps a form whole while it is changed.
#include "apple_event_manager/storage.h"

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
    if (size > 0) std::memcpy(outBytes + kItemHeader, inItem.content.data(), size);
    std::fill_n(outBytes + kItemHeader + size, Padded(size) - size, UInt8(0));
}

void CheckSize(UInt64 inSize) {
    if (inSize > kMaximumSize) throw std::bad_alloc();
}

Buffer FormOf(const Item& inItem) {
    CheckSize(inItem.content.size() + UInt64(kContent));
    Buffer form(kFirstItem + inItem.FormSize());
    WriteBigEndian(form.Data(), kMagic);
    WriteItem(form.Data() + kFirstItem, inItem);
    return form;
}

}  // namespace

std::unique_ptr<Storage> Storage::OfItem(const Item& inItem) {
    return OfForm(FormOf(inItem), inItem.IsContainer() ? inItem.depthAtMost : 0);
}

std::unique_ptr<Storage> Storage::OfLeaf(DescType inType, Bytes inData) {
    return OfItem({inType, Kind::Leaf, inData});
}

std::unique_ptr<Storage> Storage::Empty(Kind inKind, DescType inType) {
    static constexpr UInt8 kZeros[kEventHeader] = {};
    const UInt32 size = inKind == Kind::Event ? kEventHeader : kListHeader;
    return OfItem({inType, inKind, Bytes(kZeros, size), 1});
}

std::unique_ptr<Storage> Storage::OfForm(Buffer&& inForm, int inDepthAtMost) {
    const Item whole = ReadItem(inForm, kFirstItem);
    std::unique_ptr<Storage> storage(new Storage(whole.kind));
    if (whole.IsContainer()) storage->mCount = ItemsOf(whole.kind, whole.content).count;
    storage->mDepthAtMost = inDepthAtMost;
    storage->mForm = std::move(inForm);
    return storage;
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

Bytes Storage::Content() const {
    return mLoan ? mLoan->data : ReadItem(mForm, kFirstItem).content;
}

Bytes Storage::Form(DescType inType) {
    if (mLoan) {
        mForm = FormOf({inType, mKind, mLoan->data});
        EndLoan();
    }
    WriteBigEndian(mForm.Data() + kFirstItem + kTypeAt, UInt32(inType));
    return mForm;
}

void Storage::ReplaceWithLeaf(DescType inType, Bytes inData) {
    auto form = FormOf({inType, Kind::Leaf, inData});
    EndLoan();
    ForgetIndex();
    mFactoring.clear();
    mFetched.clear();
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
    UInt8* entry = mForm.Data() + inAt;
    if (KeySize() > 0) WriteBigEndian(entry, UInt32(inKey));
    WriteItem(entry + KeySize(), inItem);
}

void Storage::UpdateHeader() {
    UInt8* content = mForm.Data() + kContent;
    WriteBigEndian(mForm.Data() + kFirstItem + kSizeAt, UInt32(mForm.Size()) - kContent);
    WriteBigEndian(content, mCount);
}

void Storage::GrowParameters(SInt64 inGrowth) {
    if (mKind != Kind::Event) return;
    UInt8* bytes = mForm.Data() + kContent + kParameterBytesAt;
    WriteBigEndian(bytes, UInt32(SInt64(ReadBigEndian<UInt32>(bytes)) + inGrowth));
}

}  // namespace carbon
