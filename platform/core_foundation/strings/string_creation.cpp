// Making strings from bytes, units and other strings.
#include <cstring>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/internal.h"
#include "core_foundation/strings/string_object.h"
#include "text_utilities/mac_roman.h"

namespace carbon {

namespace {

// One unit a byte, and none that could be wrong.
CFStringRef FromMacRoman(std::string_view inBytes) {
    if (inBytes.empty()) return NewString({});
    const UnwrittenString made = NewUnwritten(inBytes.size());
    DecodeMacRoman(inBytes, made.units);
    return made.string;
}

CFStringRef FromBytes(std::string_view inBytes, CFStringEncoding inEncoding, bool inIsExternal) {
    return OrNull([&]() -> CFStringRef {
        if (inEncoding == kCFStringEncodingMacRoman) return FromMacRoman(inBytes);
        const auto text = Decode(inBytes, inEncoding, inIsExternal);
        return text ? NewString(*text) : nullptr;
    });
}

std::string_view Bytes(const void* inStart, size_t inCount) {
    return {static_cast<const char*>(inStart), inCount};
}

// Copied always: the string has no other form to keep foreign bytes in.
CFStringRef TakeOver(CFStringRef inMade, const void* inContents, CFAllocatorRef inDeallocator) {
    if (inMade) CFAllocatorDeallocate(inDeallocator, const_cast<void*>(inContents));
    return inMade;
}

}  // namespace

std::string Utf8(CFStringRef inString) {
    return Utf8Of(View(inString));
}

CFStringRef StringFromUtf8(std::string_view inText) {
    return FromBytes(inText, kCFStringEncodingUTF8, false);
}

}  // namespace carbon

using carbon::FromBytes;
using carbon::OrNull;
using carbon::View;

CFTypeID CFStringGetTypeID() {
    return carbon::kStringKind;
}

CFStringRef CFStringCreateWithPascalString(CFAllocatorRef, ConstStr255Param pStr,
                                           CFStringEncoding encoding) {
    return FromBytes(carbon::Bytes(pStr + 1, pStr[0]), encoding, false);
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* cStr, CFStringEncoding encoding) {
    return FromBytes(cStr, encoding, false);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
    if (numBytes < 0) return nullptr;
    return FromBytes(carbon::Bytes(bytes, static_cast<size_t>(numBytes)), encoding,
                     isExternalRepresentation);
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* chars, CFIndex numChars) {
    if (numChars < 0) return nullptr;
    return OrNull([&] {
        if (numChars == 0) return carbon::NewString({});
        const auto length = static_cast<size_t>(numChars);
        const carbon::UnwrittenString made = carbon::NewUnwritten(length);
        std::memcpy(made.units, chars, length * sizeof(UniChar));
        return made.string;
    });
}

CFStringRef CFStringCreateWithPascalStringNoCopy(CFAllocatorRef alloc, ConstStr255Param pStr,
                                                 CFStringEncoding encoding,
                                                 CFAllocatorRef contentsDeallocator) {
    return carbon::TakeOver(CFStringCreateWithPascalString(alloc, pStr, encoding), pStr,
                            contentsDeallocator);
}

CFStringRef CFStringCreateWithCStringNoCopy(CFAllocatorRef alloc, const char* cStr,
                                            CFStringEncoding encoding,
                                            CFAllocatorRef contentsDeallocator) {
    return carbon::TakeOver(CFStringCreateWithCString(alloc, cStr, encoding), cStr,
                            contentsDeallocator);
}

CFStringRef CFStringCreateWithCharactersNoCopy(CFAllocatorRef alloc, const UniChar* chars,
                                               CFIndex numChars,
                                               CFAllocatorRef contentsDeallocator) {
    return carbon::TakeOver(CFStringCreateWithCharacters(alloc, chars, numChars), chars,
                            contentsDeallocator);
}

CFStringRef CFStringCreateWithSubstring(CFAllocatorRef alloc, CFStringRef str, CFRange range) {
    const auto text = View(str);
    if (!carbon::IsInside(range, text.size())) return nullptr;
    if (static_cast<size_t>(range.length) == text.size()) return CFStringCreateCopy(alloc, str);
    return OrNull([&] {
        return carbon::NewString(
            text.substr(static_cast<size_t>(range.location), static_cast<size_t>(range.length)));
    });
}

CFStringRef CFStringCreateCopy(CFAllocatorRef, CFStringRef theString) {
    const auto* string = carbon::OfKind<__CFString>(theString, carbon::kStringKind);
    if (!string) return nullptr;
    if (!string->IsMutable()) return static_cast<CFStringRef>(CFRetain(theString));
    return OrNull([&] { return carbon::NewString(string->View()); });
}

CFMutableStringRef CFStringCreateMutable(CFAllocatorRef, CFIndex maxLength) {
    return OrNull([&] { return carbon::NewMutable(maxLength, {}); });
}

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef, CFIndex maxLength,
                                             CFStringRef theString) {
    return OrNull([&] { return carbon::NewMutable(maxLength, View(theString)); });
}

CFStringRef CFStringCreateFromExternalRepresentation(CFAllocatorRef alloc, CFDataRef data,
                                                     CFStringEncoding encoding) {
    return CFStringCreateWithBytes(alloc, CFDataGetBytePtr(data), CFDataGetLength(data), encoding,
                                   true);
}

CFDataRef CFStringCreateExternalRepresentation(CFAllocatorRef alloc, CFStringRef theString,
                                               CFStringEncoding encoding, UInt8 lossByte) {
    return OrNull([&]() -> CFDataRef {
        const auto bytes = carbon::EncodeAll(View(theString), encoding, lossByte, true);
        if (!bytes || bytes->size() > carbon::kLongestString) return nullptr;
        return CFDataCreate(alloc, reinterpret_cast<const UInt8*>(bytes->data()),
                            static_cast<CFIndex>(bytes->size()));
    });
}
