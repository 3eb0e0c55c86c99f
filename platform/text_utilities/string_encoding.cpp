// Unicode strings in the encoding of the application's script, which is Roman.
#include <Carbon/HITextUtils.h>
#include <Carbon/MacApplication.h>
#include <Carbon/MacErrors.h>
#include <Carbon/Script.h>

#include <algorithm>

namespace carbon {

namespace {

// All characters or none: a text that MacRoman cannot say whole must not lose its end in silence.
OSStatus CopyRoman(CFStringRef inString, UInt8* outText, CFIndex inRoom, CFIndex* outLength) {
    const CFRange all = CFRangeMake(0, CFStringGetLength(inString));
    CFIndex needed = 0;
    const CFIndex said =
        CFStringGetBytes(inString, all, kCFStringEncodingMacRoman, 0, false, nullptr, 0, &needed);
    if (said < all.length) return kTECUnmappableElementErr;
    CFStringGetBytes(inString, all, kCFStringEncodingMacRoman, 0, false, outText, inRoom,
                     outLength);
    if (*outLength < needed) return kTECOutputBufferFullStatus;
    return noErr;
}

}  // namespace

}  // namespace carbon

TextEncoding GetApplicationTextEncoding() {
    return kTextEncodingMacRoman;
}

ScriptCode GetApplicationScript() {
    return smRoman;
}

OSStatus GetTextAndEncodingFromCFString(CFStringRef inString, BytePtr outText,
                                        ByteCount inTextMaxLength, ByteCount* outTextLength,
                                        TextEncoding* outEncoding) {
    if (!inString || !outText || !outTextLength) return paramErr;
    CFIndex length = 0;
    const auto room = static_cast<CFIndex>(std::min<ByteCount>(inTextMaxLength, INT32_MAX));
    const OSStatus status = carbon::CopyRoman(inString, outText, room, &length);
    *outTextLength = static_cast<ByteCount>(length);
    if (outEncoding) *outEncoding = kTextEncodingMacRoman;
    return status;
}
