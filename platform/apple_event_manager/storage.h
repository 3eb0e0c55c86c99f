// The bytes behind one descriptor: its flattened form, always whole, and ways to find items in it.
#pragma once

#include <Carbon/AEDataModel.h>

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "apple_event_manager/buffer.h"
#include "apple_event_manager/wire.h"

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
    // Bytes that stay the lender's until the callback is called, in the destructor at the latest.
    static std::unique_ptr<Storage> OfExternal(DescType inType, Bytes inData,
                                               AEDisposeExternalUPP inCallback, SInt32 inRefCon);
    ~Storage();
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;

    Kind GetKind() const { return mKind; }
    bool IsKeyed() const { return mKind == Kind::Record || mKind == Kind::Event; }
    int DepthAtMost() const { return mDepthAtMost; }
    Bytes Content() const;
    Bytes Form(DescType inType);
    void Reserve(UInt32 inBytes) { mForm.Reserve(inBytes); }
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
    // Found out when somebody asks, kept up afterwards.
    struct Index {
        std::vector<UInt32> offsets;       // of every item
        std::map<AEKeyword, UInt32> keys;  // first position of each key
        bool hasKeys = false;
    };
    struct Loan {
        Bytes data;
        AEDisposeExternalUPP callback;
        SInt32 refCon;
    };

    explicit Storage(Kind inKind) : mKind(inKind) {}

    UInt32 KeySize() const { return mKind == Kind::List ? 0 : wire::kKeySize; }
    UInt32 ItemsBegin() const;
    UInt32 ItemsEnd() const;
    UInt32 EndOf(UInt32 inAt) const { return inAt + KeySize() + ItemAt(inAt).FormSize(); }
    void WriteEntry(UInt32 inAt, UInt32 inOldSize, AEKeyword inKey, const Item& inItem);
    void UpdateHeader();
    void GrowParameters(SInt64 inGrowth);
    Index& NeedIndex();
    void NeedKeys();
    void ForgetIndex() { mIndex.reset(); }
    void EndLoan();

    Kind mKind;
    UInt32 mCount = 0;
    int mDepthAtMost = 0;
    Buffer mForm;  // without content while the data is on loan and nobody wanted the form
    std::unique_ptr<Index> mIndex;
    std::unique_ptr<Loan> mLoan;
    std::vector<bool> mFetched;
    std::vector<UInt8> mFactoring;
};

}  // namespace carbon
