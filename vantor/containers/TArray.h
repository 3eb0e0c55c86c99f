// The typed layer over LArray.
#pragma once

#include "vantor/containers/LArray.h"

// An array of T, which must be plain data. Items are compared byte by byte (4-byte items as signed
// numbers) and not kept sorted; the untyped members of LArray set that up differently.
template <typename T>
class TArray : public LArray {
  public:
    TArray() : LArray(UInt32{sizeof(T)}, nullptr, false) {}
    ~TArray() override = default;

    using LArray::AddItem;
    using LArray::FetchIndexOf;
    using LArray::FetchItemAt;

    SInt32 AddItem(const T& inItem) { return LArray::AddItem(&inItem, 0); }
    SInt32 FetchIndexOf(const T& inItem) const { return LArray::FetchIndexOf(&inItem, 0); }
    Boolean FetchItemAt(SInt32 inAtIndex, T& outItem) const {
        return LArray::FetchItemAt(inAtIndex, &outItem);
    }
};
