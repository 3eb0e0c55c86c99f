// Owns strings in handles and in resources.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Carbon/Resources.h>
#include <Carbon/TextUtils.h>

#include <algorithm>

#include "text_utilities/string_list.h"

namespace carbon {

void StringInList(std::span<const UInt8> inList, SInt16 inIndex, Str255 outString) {
    outString[0] = 0;
    const int count = inList.size() < 2 ? 0 : inList[0] << 8 | inList[1];
    if (inIndex < 1 || inIndex > count) return;
    size_t at = 2;
    for (int i = 1; i < inIndex && at < inList.size(); ++i) at += 1u + inList[at];
    // Lists lie about their count.
    if (at >= inList.size() || inList[at] >= inList.size() - at) return;
    std::copy_n(inList.begin() + SInt64(at), 1 + inList[at], outString);
}

}  // namespace carbon

StringHandle NewString(ConstStr255Param theString) {
    Handle handle = nullptr;
    if (theString) PtrToHand(theString, &handle, 1 + theString[0]);
    return reinterpret_cast<StringHandle>(handle);
}

void SetString(StringHandle theString, ConstStr255Param strNew) {
    if (strNew) PtrToXHand(strNew, reinterpret_cast<Handle>(theString), 1 + strNew[0]);
}

StringHandle GetString(SInt16 stringID) {
    return reinterpret_cast<StringHandle>(GetResource('STR ', stringID));
}

void GetIndString(Str255 theString, SInt16 strListID, SInt16 index) {
    theString[0] = 0;
    const Handle list = GetResource('STR#', strListID);
    if (!list) return;
    LoadResource(list);  // the load flag may be off
    if (!*list) return;
    const auto* bytes = reinterpret_cast<const UInt8*>(*list);
    carbon::StringInList({bytes, size_t(GetHandleSize(list))}, index, theString);
}
