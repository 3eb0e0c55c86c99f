// Bytes as text and back, in every encoding: what was measured is what is written, nothing is
// written behind the buffer, and what an encoding of Unicode or of single bytes gave comes back.
#include <CoreFoundation/CoreFoundation.h>

#include <cstdlib>
#include <vector>

#include "core_foundation/encodings/encodings.h"

namespace {

CFStringEncoding EncodingNumber(UInt8 inNumber) {
    static const auto* list = CFStringGetListOfAvailableEncodings();
    static const size_t count = [] {
        size_t length = 0;
        while (list[length] != kCFStringEncodingInvalidId) ++length;
        return length;
    }();
    return list[inNumber % count];
}

void Require(bool inIsRight) {
    if (!inIsRight) std::abort();
}

// The first ten encodings of the list need no converter of ICU's.
bool ComesBackAsItWas(UInt8 inNumber) {
    return inNumber < 10;
}

constexpr UInt8 kUntouched = 0xA5;

void CheckBuffer(CFStringRef inText, CFStringEncoding inEncoding, UInt8 inLoss, Boolean inExternal,
                 CFIndex inRoom) {
    const CFRange all = CFRangeMake(0, CFStringGetLength(inText));
    CFIndex needed = 0, used = 0;
    const CFIndex said =
        CFStringGetBytes(inText, all, inEncoding, inLoss, inExternal, nullptr, 0, &needed);
    // Never without a byte: no buffer would mean to measure again.
    std::vector<UInt8> exact(static_cast<size_t>(needed) + 1, kUntouched);
    std::vector<UInt8> small(static_cast<size_t>(inRoom) + 1, kUntouched);
    Require(CFStringGetBytes(inText, all, inEncoding, inLoss, inExternal, exact.data(), needed,
                             &used) == said);
    Require(used == needed);
    Require(CFStringGetBytes(inText, all, inEncoding, inLoss, inExternal, small.data(), inRoom,
                             &used) <= said);
    Require(used <= inRoom);
    Require(exact.back() == kUntouched && small.back() == kUntouched);
}

void CheckRoundTrip(CFStringRef inText, CFStringEncoding inEncoding) {
    CFDataRef bytes = CFStringCreateExternalRepresentation(nullptr, inText, inEncoding, 0);
    if (!bytes) return;
    CFStringRef back = CFStringCreateFromExternalRepresentation(nullptr, bytes, inEncoding);
    Require(back != nullptr);
    // A letter and its mark may have become one.
    Require(CFStringCompare(back, inText, kCFCompareNonliteral) == kCFCompareEqualTo);
    CFRelease(back);
    CFRelease(bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inBytes, size_t inSize) {
    if (inSize < 4) return 0;
    const CFStringEncoding from = EncodingNumber(inBytes[0]), to = EncodingNumber(inBytes[1]);
    const Boolean external = inBytes[2] & 1;
    const UInt8 loss = inBytes[2] & 2 ? '?' : 0;
    const auto room = static_cast<CFIndex>(inBytes[3]);
    CFStringRef text = CFStringCreateWithBytes(nullptr, inBytes + 4,
                                               static_cast<CFIndex>(inSize - 4), from, external);
    if (!text) return 0;
    CheckBuffer(text, to, loss, external, room);
    const bool hasMark =
        CFStringGetLength(text) > 0 && CFStringGetCharacterAtIndex(text, 0) == 0xFEFF;
    if (ComesBackAsItWas(inBytes[1]) && !hasMark) CheckRoundTrip(text, to);
    CFRelease(text);
    return 0;
}
