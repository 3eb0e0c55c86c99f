// The bytes behind one descriptor: its flattened form, always whole, and ways to find items in it.
#pragma once

#include <Carbon/AEDataModel.h>

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "apple_event_manager/data/buffer.h"
#include "apple_event_manager/data/wire.h"

namespace carbon {

// Where a container keeps an item.
struct Place {
    UInt32 position;  // 0-based, within its section
    UInt32 at;        // offset of the item (of its key, if it has one) in the form
};

class Storage {
  public:
    static std::unique_ptr<Storage> OfItem(const Item& inItem);
    static std::unique_ptr<Storage> OfLeaf(DescType inType, Bytes inData);
    static std::unique_ptr<Storage> Empty(Kind inKind, DescType inType);
    // The bytes must have passed CheckForm, which also knows how deep they are nested.
    static std::unique_ptr<Storage> OfForm(Buffer&& inForm, int inDepthAtMost);
    // An item of a container as a descriptor of its own, its bytes shared when they are many.
    static std::unique_ptr<Storage> OfItemIn(Storage& ioContainer, UInt32 inAt);
    // Bytes that stay the lender's until the callback is called, in the destructor at the latest.
    static std::unique_ptr<Storage> OfExternal(DescType inType, Bytes inData,
                                               AEDisposeExternalUPP inCallback, SInt32 inRefCon);
    ~Storage();
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;

    Kind GetKind() const { return mKind; }
    bool IsKeyed() const { return mKind == Kind::Record || mKind == Kind::Event; }
    int DepthAtMost() const { return mDepthAtMost; }
    Bytes Content() const {
        return mLoan ? mLoan->data : ReadItem(mForm, wire::kFirstItem).content;
    }
    Bytes Form(DescType inType);
    void ReplaceWithLeaf(DescType inType, Bytes inData);

    // Containers: items of lists and records, parameters of events.
    UInt32 Count() const { return mCount; }
    UInt32 PlaceAt(UInt32 inPosition);
    std::optional<Place> Find(AEKeyword inKey);
    Item ItemAt(UInt32 inAt) const { return ReadItem(mForm, inAt + KeySize()); }
    AEKeyword KeyAt(UInt32 inAt) const;
    void Append(AEKeyword inKey, const Item& inItem);
    void Replace(const Place& inPlace, const Item& inItem);
    void Erase(const Place& inPlace);
    void Clear();
    static bool FitsNesting(const Item& inItem);

    // Attributes of events.
    std::optional<UInt32> FindAttribute(AEKeyword inKey) const;
    void PutAttribute(AEKeyword inKey, const Item& inItem);
    void AddAttribute(AEKeyword inKey, const Item& inItem);  // one that it does not have

    // Which parameters of this event its reader has fetched; never part of the form.
    void MarkFetched(UInt32 inPosition);
    bool IsFetched(UInt32 inPosition) const;

    // What AECreateList was told that all items have in common.
    void SetFactoring(Bytes inFactoring) {
        mFactoring.assign(inFactoring.begin(), inFactoring.end());
    }
    Bytes Factoring() const { return mFactoring; }
    bool FitsFactoring(const Item& inItem) const;

  private:
    static constexpr UInt32 kFewParameters = 64;

    // Found out when somebody asks, kept up afterwards.
    struct Index {
        std::vector<UInt32> offsets;       // of the items so far, of one at least
        std::map<AEKeyword, UInt32> keys;  // first position of each key
        bool hasKeys = false;
    };
    struct Loan {
        Bytes data;
        AEDisposeExternalUPP callback;
        SInt32 refCon;
    };

    explicit Storage(Kind inKind) : mKind(inKind) {}

    void AdoptContainer(int inDepthAtMost);
    UInt32 KeySize() const { return mKind == Kind::List ? 0 : wire::kKeySize; }
    UInt32 ItemsBegin() const;
    UInt32 ItemsEnd() const;
    UInt32 EndOf(UInt32 inAt) const { return inAt + KeySize() + ItemAt(inAt).FormSize(); }
    void WriteEntry(UInt32 inAt, UInt32 inOldSize, AEKeyword inKey, const Item& inItem);
    void UpdateHeader();
    void GrowParameters(SInt64 inGrowth);
    Index& IndexUpTo(UInt32 inPosition);
    void NeedKeys();
    void ForgetIndex() { mIndex.reset(); }
    void ForgetFetched(UInt32 inPosition);
    void EraseFetched(UInt32 inPosition);
    void ForgetAllFetched() {
        mFetchedFew = 0;
        mFetchedMore.clear();
    }
    void EndLoan();

    Kind mKind;
    UInt32 mCount = 0;
    int mDepthAtMost = 0;
    Buffer mForm;  // without content while the data is on loan and nobody wanted the form
    std::unique_ptr<Index> mIndex;
    std::unique_ptr<Loan> mLoan;
    UInt64 mFetchedFew = 0;  // a bit for each of the first parameters
    std::vector<bool> mFetchedMore;
    std::vector<UInt8> mFactoring;
};

}  // namespace carbon
