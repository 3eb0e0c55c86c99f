// How the items of an array are ordered and found.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Compares items as unsigned bytes. Results are below, equal to or above 0, like memcmp. Sizes are
// bytes. A derived class that wants searches by key (something that is no whole item) overrides
// CompareToKey.
class VANTOR_EXPORT LComparator {
  public:
    LComparator() = default;
    virtual ~LComparator();

    // Over the shorter length first; the shorter of two equal beginnings comes first.
    virtual SInt32 Compare(const void* inItemOne, const void* inItemTwo, UInt32 inSizeOne,
                           UInt32 inSizeTwo) const;
    virtual Boolean IsEqualTo(const void* inItemOne, const void* inItemTwo, UInt32 inSizeOne,
                              UInt32 inSizeTwo) const;

    // Bytes know no keys: this class finds none.
    virtual SInt32 CompareToKey(const void* inItem, UInt32 inSize, const void* inKey) const;
    virtual Boolean IsEqualToKey(const void* inItem, UInt32 inSize, const void* inKey) const;

    // A new comparator of the same class, owned by the caller.
    virtual LComparator* Clone();

    // The shared one, made on first use and never freed.
    static LComparator* GetComparator();

  protected:
    static SInt32 BlockCompare(const void* inItemOne, const void* inItemTwo, UInt32 inSizeOne,
                               UInt32 inSizeTwo);

    static LComparator* sComparator;
};

// Compares items as signed 32-bit numbers in the machine's byte order.
class VANTOR_EXPORT LLongComparator : public LComparator {
  public:
    // The difference of the two, which wraps around: numbers 2^31 or more apart compare the wrong
    // way.
    SInt32 Compare(const void* inItemOne, const void* inItemTwo, UInt32 inSizeOne,
                   UInt32 inSizeTwo) const override;
    Boolean IsEqualTo(const void* inItemOne, const void* inItemTwo, UInt32 inSizeOne,
                      UInt32 inSizeTwo) const override;
    LComparator* Clone() override;

    static LLongComparator* GetComparator();

  protected:
    static LLongComparator* sLongComparator;
};
