// Splitting strings into arrays and joining them again; lines.
#include <cstring>

#include "core_foundation/object.h"
#include "core_foundation/strings/string_object.h"
#include "core_foundation/strings/string_search.h"

namespace carbon {

namespace {

const void* CopyRange(CFAllocatorRef, const void* inRange) {
    return new CFRange(*static_cast<const CFRange*>(inRange));
}

void DeleteRange(CFAllocatorRef, const void* inRange) {
    delete static_cast<const CFRange*>(inRange);
}

CFStringRef DescribeRange(const void* inRange) {
    const auto* range = static_cast<const CFRange*>(inRange);
    return CFStringCreateWithFormat(nullptr, nullptr, CFSTR("{%d, %d}"), int{range->location},
                                    int{range->length});
}

Boolean AreSameRanges(const void* inOne, const void* inOther) {
    return std::memcmp(inOne, inOther, sizeof(CFRange)) == 0;
}

constexpr CFArrayCallBacks kRangeCallBacks = {0, CopyRange, DeleteRange, DescribeRange,
                                              AreSameRanges};

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

CFArrayRef Matches(std::u16string_view inText, std::u16string_view inNeedle, const CFRange& inRange,
                   CFOptionFlags inFlags) {
    const Owned<CFMutableArrayRef> found(CFArrayCreateMutable(nullptr, 0, &kRangeCallBacks));
    if (!found || !IsInside(inRange, inText.size())) return nullptr;
    Search search(inText, inRange, inNeedle, inFlags);
    while (const auto match = search.Next()) CFArrayAppendValue(found.Get(), &*match);
    return CFArrayGetCount(found.Get()) > 0 ? CFArrayCreateCopy(nullptr, found.Get()) : nullptr;
}

bool IsLineEnd(char16_t inUnit) {
    return inUnit == u'\n' || inUnit == u'\r' || inUnit == 0x85 || inUnit == 0x2028 ||
           inUnit == 0x2029;
}

// Whether a line begins here: after a line end, but not between CR and LF.
bool BeginsLine(std::u16string_view inText, size_t inPlace) {
    if (inPlace == 0) return true;
    const bool isBetween =
        inPlace < inText.size() && inText[inPlace - 1] == u'\r' && inText[inPlace] == u'\n';
    return IsLineEnd(inText[inPlace - 1]) && !isBetween;
}

// Where the line end that ends at inEnd begins.
size_t WithoutLineEnd(std::u16string_view inText, size_t inStart, size_t inEnd) {
    if (inEnd == inStart || !IsLineEnd(inText[inEnd - 1])) return inEnd;
    const bool isPair =
        inEnd - inStart > 1 && inText[inEnd - 1] == u'\n' && inText[inEnd - 2] == u'\r';
    return inEnd - (isPair ? 2 : 1);
}

}  // namespace

}  // namespace carbon

CFArrayRef CFStringCreateArrayWithFindResults(CFAllocatorRef, CFStringRef theString,
                                              CFStringRef stringToFind, CFRange rangeToSearch,
                                              CFOptionFlags compareOptions) {
    return carbon::OrNull([&] {
        return carbon::Matches(carbon::View(theString), carbon::View(stringToFind), rangeToSearch,
                               compareOptions);
    });
}

void CFStringGetLineBounds(CFStringRef theString, CFRange range, CFIndex* lineBeginIndex,
                           CFIndex* lineEndIndex, CFIndex* contentsEndIndex) {
    const auto text = carbon::View(theString);
    const CFRange part = carbon::Clip(range, text.size());
    auto start = static_cast<size_t>(part.location);
    while (!carbon::BeginsLine(text, start)) --start;
    // An empty range touches the line it stands in, any other the line of its last unit.
    size_t end = static_cast<size_t>(part.location) + static_cast<size_t>(part.length);
    if (part.length == 0 && end < text.size()) ++end;
    while (end < text.size() && (end == start || !carbon::BeginsLine(text, end))) ++end;
    if (lineBeginIndex) *lineBeginIndex = static_cast<CFIndex>(start);
    if (lineEndIndex) *lineEndIndex = static_cast<CFIndex>(end);
    if (contentsEndIndex) {
        *contentsEndIndex = static_cast<CFIndex>(carbon::WithoutLineEnd(text, start, end));
    }
}

CFArrayRef CFStringCreateArrayBySeparatingStrings(CFAllocatorRef, CFStringRef theString,
                                                  CFStringRef separatorString) {
    return carbon::OrNull(
        [&] { return carbon::Split(carbon::View(theString), carbon::View(separatorString)); });
}

CFStringRef CFStringCreateByCombiningStrings(CFAllocatorRef, CFArrayRef theArray,
                                             CFStringRef separatorString) {
    return carbon::OrNull([&] { return carbon::Join(theArray, carbon::View(separatorString)); });
}
