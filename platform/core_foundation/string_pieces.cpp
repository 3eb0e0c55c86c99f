// Splitting strings into arrays and joining them again.
#include "core_foundation/object.h"
#include "core_foundation/string_object.h"
#include "core_foundation/string_search.h"

namespace carbon {

namespace {

CFArrayRef Split(std::u16string_view inText, std::u16string_view inSeparator) {
    Owned<CFMutableArrayRef> pieces(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
    const auto add = [&](std::u16string_view inPiece) {
        const Owned<CFStringRef> piece(NewString(inPiece));
        CFArrayAppendValue(pieces.Get(), piece.Get());
    };
    Search search(inText, {0, static_cast<CFIndex>(inText.size())}, inSeparator, 0);
    size_t done = 0;
    while (const auto match = search.Next()) {
        add(inText.substr(done, static_cast<size_t>(match->location) - done));
        done = static_cast<size_t>(match->location) + static_cast<size_t>(match->length);
    }
    add(inText.substr(done));
    return pieces.Detach();
}

CFStringRef Join(CFArrayRef inPieces, std::u16string_view inSeparator) {
    std::u16string text;
    for (CFIndex i = 0; i < CFArrayGetCount(inPieces); ++i) {
        if (i > 0) text.append(inSeparator);
        text.append(View(static_cast<CFStringRef>(CFArrayGetValueAtIndex(inPieces, i))));
    }
    return NewString(text);
}

}  // namespace

}  // namespace carbon

CFArrayRef CFStringCreateArrayBySeparatingStrings(CFAllocatorRef, CFStringRef theString,
                                                  CFStringRef separatorString) {
    return carbon::OrNull(
        [&] { return carbon::Split(carbon::View(theString), carbon::View(separatorString)); });
}

CFStringRef CFStringCreateByCombiningStrings(CFAllocatorRef, CFArrayRef theArray,
                                             CFStringRef separatorString) {
    return carbon::OrNull([&] { return carbon::Join(theArray, carbon::View(separatorString)); });
}
