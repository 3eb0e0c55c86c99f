// Owns strings in handles and in resources.
#include <Carbon/MacErrors.h>
#include <Carbon/MacMemory.h>
#include <Carbon/Resources.h>
#include <Carbon/TextUtils.h>

#include "text_utilities/string_list.h"

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
