// Reads the smallest pieces of the text that values are built from.
#include "apple_event_manager/text/build_syntax.h"

#include <Carbon/MacErrors.h>

#include <algorithm>
#include <charconv>
#include <optional>

namespace carbon {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kPunctuation = "{}[]():,'\"@$&~\\-";
constexpr size_t kCodeSize = sizeof(OSType);

bool IsDigit(char inCharacter) {
    return inCharacter >= '0' && inCharacter <= '9';
}

bool IsOfCode(char inCharacter) {
    const auto byte = static_cast<UInt8>(inCharacter);
    return byte > ' ' && byte != 0x7F && kPunctuation.find(inCharacter) == kPunctuation.npos;
}

OSType CodeOf(std::string_view inText) {
    OSType code = 0;
    for (size_t i = 0; i < kCodeSize; ++i)
        code = code << 8 | static_cast<UInt8>(i < inText.size() ? inText[i] : ' ');
    return code;
}

// The code that '$0A0B0C0D$' stands for.
std::optional<OSType> CodeInHex(std::string_view inText) {
    constexpr size_t kWrittenSize = 2 * kCodeSize + 2;
    if (inText.size() != kWrittenSize || inText.front() != '$' || inText.back() != '$') return {};
    const char* end = &inText.back();
    OSType code = 0;
    const auto parsed = std::from_chars(inText.data() + 1, end, code, 16);
    return parsed.ptr == end ? std::optional(code) : std::nullopt;
}

}  // namespace

void BuildScanner::FailAt(AEBuildErrorCode inCode, UInt32 inPosition) {
    throw BuildFailure{errAEBuildSyntaxError, {inCode, inPosition}};
}

char BuildScanner::Peek() {
    mAt = std::min(mText.find_first_not_of(kBlanks, mAt), mText.size());
    return mAt < mText.size() ? mText[mAt] : '\0';
}

bool BuildScanner::Take(char inCharacter) {
    if (Peek() != inCharacter) return false;
    ++mAt;
    return true;
}

UInt32 BuildScanner::Position() {
    Peek();
    return static_cast<UInt32>(mAt);
}

bool BuildScanner::IsAtNumber() {
    return Peek() == '-' || IsDigit(Peek());
}

bool BuildScanner::IsAtCode() {
    return Peek() == '\'' || (IsOfCode(Peek()) && !IsDigit(Peek()));
}

SInt64 BuildScanner::Number() {
    const UInt32 start = Position();
    const char *begin = mText.data() + start, *end = mText.data() + mText.size();
    if (*begin == '-' && (begin + 1 == end || !IsDigit(begin[1])))
        FailAt(aeBuildSyntaxBadNegative, start);
    SInt64 number = 0;
    const auto [rest, error] = std::from_chars(begin, end, number);
    if (error != std::errc()) FailAt(aeBuildSyntaxBadData, start);
    mAt = static_cast<size_t>(rest - mText.data());
    if (mAt < mText.size() && IsOfCode(mText[mAt])) Fail(aeBuildSyntaxBadToken);
    return number;
}

std::string_view BuildScanner::UntilQuote(char inQuote, AEBuildErrorCode inIfMissing) {
    const UInt32 start = Position();
    const size_t end = mText.find(inQuote, start + 1);
    if (end == mText.npos) FailAt(inIfMissing, start);
    mAt = end + 1;
    return mText.substr(start + 1, end - start - 1);
}

OSType BuildScanner::QuotedCode() {
    const UInt32 start = Position();
    const std::string_view text = UntilQuote('\'', aeBuildSyntaxMissingQuote);
    if (const auto code = CodeInHex(text)) return *code;
    if (text.empty() || text.size() > kCodeSize) FailAt(aeBuildSyntaxBadToken, start);
    return CodeOf(text);
}

OSType BuildScanner::Code() {
    if (Peek() == '\'') return QuotedCode();
    const UInt32 start = Position();
    while (mAt < mText.size() && IsOfCode(mText[mAt])) ++mAt;
    if (mAt - start > kCodeSize) FailAt(aeBuildSyntaxBadToken, start);
    return CodeOf(mText.substr(start, mAt - start));
}

std::string_view BuildScanner::Text() {
    return UntilQuote('"', aeBuildSyntaxNoCloseString);
}

UInt8 BuildScanner::HexDigit() {
    const char digit = Peek();
    if (IsDigit(digit)) return ++mAt, static_cast<UInt8>(digit - '0');
    if (digit >= 'A' && digit <= 'F') return ++mAt, static_cast<UInt8>(digit - 'A' + 10);
    if (digit >= 'a' && digit <= 'f') return ++mAt, static_cast<UInt8>(digit - 'a' + 10);
    Fail(aeBuildSyntaxBadHex);
}

std::vector<UInt8> BuildScanner::Hex() {
    const UInt32 start = Position();
    std::vector<UInt8> bytes;
    for (++mAt; !Take('$');) {
        if (Peek() == '\0') FailAt(aeBuildSyntaxNoCloseHex, start);
        const auto high = HexDigit();
        if (Peek() == '$') Fail(aeBuildSyntaxOddHex);
        if (Peek() == '\0') FailAt(aeBuildSyntaxNoCloseHex, start);
        bytes.push_back(static_cast<UInt8>(high << 4 | HexDigit()));
    }
    return bytes;
}

}  // namespace carbon
