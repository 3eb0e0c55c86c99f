// Strings from resources, read once.
#include <algorithm>
#include <map>
#include <utility>

#include "vantor/foundation/LException.h"
#include "vantor/strings/TCFString.h"

namespace {

// A type of this file, so that nothing of the table is among the library's exported names.
struct CachedString {
    TCFString text;
};
using CachedStrings = std::map<std::pair<SInt16, SInt16>, CachedString>;

TCFString& EntryOf(CachedStrings& ioStrings, SInt16 inResID, SInt16 inIndex) {
    const std::pair place(inResID, inIndex);
    auto found = ioStrings.find(place);
    if (found == ioStrings.end()) found = ioStrings.emplace(place, CachedString()).first;
    return found->second.text;
}

// What of a string there is; its length byte may promise more than the resource holds.
TCFString TextIn(StringHandle inString) {
    Str255 text = {};
    const Size size = std::min<Size>(GetHandleSize(reinterpret_cast<Handle>(inString)), 256);
    if (size > 0) std::copy_n(*inString, size, text);
    text[0] = static_cast<UInt8>(std::min<Size>(text[0], std::max(size - 1, 0)));
    return TCFString(text, TCFString::DefaultEncoding());
}

TCFString LoadString(SInt16 inResID) {
    const StringHandle string = GetString(inResID);
    if (string == nullptr) LException::Throw('nilP');
    const TCFString text = TextIn(string);
    ReleaseResource(reinterpret_cast<Handle>(string));
    return text;
}

TCFString LoadListEntry(SInt16 inResID, SInt16 inIndex) {
    Str255 entry = {};
    GetIndString(entry, inResID, inIndex);
    return TCFString(entry, TCFString::DefaultEncoding());
}

}  // namespace

// Kept: empty strings are stored but read anew each time, so a string that was missing is found
// once it is there; index 0 is an entry of the list, which has none with that number.
TCFString TCFString::Res(SInt16 inResID, SInt16 inIndex) {
    static CachedStrings sResStrings;
    TCFString& cached = EntryOf(sResStrings, inResID, inIndex);
    if (cached.IsEmpty())
        cached = inIndex < 0 ? LoadString(inResID) : LoadListEntry(inResID, inIndex);
    return cached;
}
