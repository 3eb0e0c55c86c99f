// Strings and number parts from resources.
#include <cstddef>
#include <cstring>

#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"
#include "vantor/foundation/StHandle.h"
#include "vantor/strings/LString.h"

namespace {

// The numbers of a table, which ends in bytes without a meaning.
constexpr std::size_t kNumbers = offsetof(NumberParts, reserved) / sizeof(SInt16);

// A table as it stands in a resource. One that is cut off is as good as none.
NumberParts PartsIn(Handle inTable) {
    if (inTable == nullptr || GetHandleSize(inTable) < SInt32{sizeof(NumberParts)})
        ThrowResourceError();
    SInt16 numbers[kNumbers];
    std::memcpy(numbers, *inTable, sizeof numbers);
    for (SInt16& number : numbers) number = NativeFromBigEndian(number);
    NumberParts parts = {};
    std::memcpy(&parts, numbers, sizeof numbers);
    return parts;
}

}  // namespace

LString& LString::Assign(SInt16 inResID, SInt16 inIndex) {
    return inIndex > 0 ? LoadFromSTRListResource(inResID, inIndex) : LoadFromSTRResource(inResID);
}

LString& LString::Assign(long double inNumber, ConstStr255Param inFormat, SInt16 inPartsResID,
                         SInt8* outResult) {
    const Handle table = GetResource('NoPt', inPartsResID);
    if (table == nullptr) ThrowResourceError();
    NumFormatString format;
    NumberParts parts;
    {
        const StHandleLocker lock(table);
        FetchFloatFormat(inFormat, PartsIn(table), format, parts);
    }
    return Assign(inNumber, format, parts, outResult);
}

LString& LString::LoadFromSTRResource(SInt16 inResID) {
    const StringHandle string = GetString(inResID);
    return LoadFromStringPtr(string != nullptr ? *string : nullptr);
}

LString& LString::LoadFromSTRListResource(SInt16 inResID, SInt16 inIndex) {
    if (mCapacity >= SInt16{sizeof(Str255)}) {
        GetIndString(mStringPtr, inResID, inIndex);
        return *this;
    }
    Str255 string;
    GetIndString(string, inResID, inIndex);
    return LoadFromStringPtr(string);
}
