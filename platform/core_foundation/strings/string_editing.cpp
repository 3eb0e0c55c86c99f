// Changing mutable strings.
#include <unicode/uchar.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "core_foundation/encodings/encodings.h"
#include "core_foundation/strings/string_format.h"
#include "core_foundation/strings/string_object.h"
#include "core_foundation/strings/string_search.h"

namespace carbon {

namespace {

// Replaces a part that is cut to the string. inText may view the string itself.
void ReplacePart(CFMutableStringRef ioString, const CFRange& inRange, std::u16string_view inText) {
    MutableString* string = Mutable(ioString);
    if (!string) return;
    const CFRange range = Clip(inRange, string->View().size());
    const auto start = static_cast<size_t>(range.location);
    const auto count = static_cast<size_t>(range.length);
    if (inText.data() == string->View().data()) {
        string->Replace(start, count, std::u16string(inText));
    } else {
        string->Replace(start, count, inText);
    }
}

void AppendText(CFMutableStringRef ioString, std::u16string_view inText) {
    ReplacePart(ioString, {CFStringGetLength(ioString), 0}, inText);
}

void AppendBytes(CFMutableStringRef ioString, std::string_view inBytes,
                 CFStringEncoding inEncoding) {
    if (const auto text = Decode(inBytes, inEncoding, false)) AppendText(ioString, *text);
}

// Every match, in the order of the text.
std::vector<CFRange> Matches(std::u16string_view inText, const CFRange& inRange,
                             std::u16string_view inNeedle, CFOptionFlags inFlags) {
    std::vector<CFRange> matches;
    Search search(inText, inRange, inNeedle, inFlags);
    while (const auto match = search.Next()) matches.push_back(*match);
    if (inFlags & kCFCompareBackwards) std::reverse(matches.begin(), matches.end());
    return matches;
}

std::u16string WithReplacements(std::u16string_view inText, const std::vector<CFRange>& inMatches,
                                std::u16string_view inReplacement) {
    std::u16string text;
    size_t done = 0;
    for (const CFRange& match : inMatches) {
        text.append(inText.substr(done, static_cast<size_t>(match.location) - done));
        text.append(inReplacement);
        done = static_cast<size_t>(match.location) + static_cast<size_t>(match.length);
    }
    return text.append(inText.substr(done));
}

std::u16string_view Trimmed(std::u16string_view inText, std::u16string_view inEnds) {
    if (inEnds.empty()) return inText;
    while (inText.starts_with(inEnds)) inText.remove_prefix(inEnds.size());
    while (inText.ends_with(inEnds)) inText.remove_suffix(inEnds.size());
    return inText;
}

std::u16string_view WithoutOuterSpace(std::u16string_view inText) {
    while (!inText.empty() && u_isUWhiteSpace(inText.front())) inText.remove_prefix(1);
    while (!inText.empty() && u_isUWhiteSpace(inText.back())) inText.remove_suffix(1);
    return inText;
}

void Assign(CFMutableStringRef ioString, std::u16string_view inText) {
    if (MutableString* string = Mutable(ioString)) string->Assign(std::u16string(inText));
}

std::u16string Padding(std::u16string_view inPad, size_t inCount, size_t inFirst) {
    std::u16string text(inCount, u'\0');
    for (size_t i = 0; i < inCount; ++i) text[i] = inPad[(inFirst + i) % inPad.size()];
    return text;
}

}  // namespace

}  // namespace carbon

using carbon::View;

void CFStringAppend(CFMutableStringRef theString, CFStringRef appendedString) {
    carbon::AppendText(theString, View(appendedString));
}

void CFStringAppendCharacters(CFMutableStringRef theString, const UniChar* chars,
                              CFIndex numChars) {
    if (numChars <= 0) return;
    std::u16string text(static_cast<size_t>(numChars), u'\0');
    std::memcpy(text.data(), chars, text.size() * sizeof(UniChar));
    carbon::AppendText(theString, text);
}

void CFStringAppendPascalString(CFMutableStringRef theString, ConstStr255Param pStr,
                                CFStringEncoding encoding) {
    const auto* characters = reinterpret_cast<const char*>(pStr + 1);
    carbon::AppendBytes(theString, {characters, pStr[0]}, encoding);
}

void CFStringAppendCString(CFMutableStringRef theString, const char* cStr,
                           CFStringEncoding encoding) {
    carbon::AppendBytes(theString, cStr, encoding);
}

void CFStringAppendFormat(CFMutableStringRef theString, CFDictionaryRef formatOptions,
                          CFStringRef format, ...) {
    va_list arguments;
    va_start(arguments, format);
    CFStringAppendFormatAndArguments(theString, formatOptions, format, arguments);
    va_end(arguments);
}

void CFStringAppendFormatAndArguments(CFMutableStringRef theString, CFDictionaryRef,
                                      CFStringRef format, va_list arguments) {
    carbon::AppendText(theString, carbon::Format(View(format), arguments));
}

void CFStringInsert(CFMutableStringRef str, CFIndex idx, CFStringRef insertedStr) {
    carbon::ReplacePart(str, {idx, 0}, View(insertedStr));
}

void CFStringDelete(CFMutableStringRef theString, CFRange range) {
    carbon::ReplacePart(theString, range, {});
}

void CFStringReplace(CFMutableStringRef theString, CFRange range, CFStringRef replacement) {
    carbon::ReplacePart(theString, range, View(replacement));
}

void CFStringReplaceAll(CFMutableStringRef theString, CFStringRef replacement) {
    carbon::Assign(theString, View(replacement));
}

CFIndex CFStringFindAndReplace(CFMutableStringRef theString, CFStringRef stringToFind,
                               CFStringRef replacementString, CFRange rangeToSearch,
                               CFOptionFlags compareOptions) {
    carbon::MutableString* string = carbon::Mutable(theString);
    if (!string || !carbon::IsInside(rangeToSearch, string->View().size())) return 0;
    const auto matches =
        carbon::Matches(string->View(), rangeToSearch, View(stringToFind), compareOptions);
    if (matches.empty()) return 0;
    string->Assign(carbon::WithReplacements(string->View(), matches, View(replacementString)));
    return static_cast<CFIndex>(matches.size());
}

void CFStringPad(CFMutableStringRef theString, CFStringRef padString, CFIndex length,
                 CFIndex indexIntoPad) {
    const CFIndex now = CFStringGetLength(theString);
    if (length < 0) return;
    if (length <= now) return CFStringDelete(theString, CFRangeMake(length, now - length));
    const auto pad = View(padString);
    if (pad.empty() || indexIntoPad < 0) return;
    carbon::AppendText(theString, carbon::Padding(pad, static_cast<size_t>(length - now),
                                                  static_cast<size_t>(indexIntoPad)));
}

void CFStringTrim(CFMutableStringRef theString, CFStringRef trimString) {
    carbon::Assign(theString, carbon::Trimmed(View(theString), View(trimString)));
}

void CFStringTrimWhitespace(CFMutableStringRef theString) {
    carbon::Assign(theString, carbon::WithoutOuterSpace(View(theString)));
}
