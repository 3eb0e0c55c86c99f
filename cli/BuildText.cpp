// Reads values and parameters from the command line and shows where they cannot be read.
#include <algorithm>
#include <cstdio>

#include "Failure.h"
#include "Message.h"
#include "Target.h"

namespace cli {
namespace {

const char* SentenceFor(const AEBuildError& inError) {
    static constexpr const char* kSentences[] = {
        "it cannot be read",
        "this means nothing; codes have up to four characters, or quotes around them",
        "something is missing at the end",
        "nothing more is expected here",
        "a minus sign needs digits behind it; codes with one are quoted, as in '----'",
        "this code has no second quote",
        "this is no hexadecimal digit",
        "the last byte has only one hexadecimal digit",
        "these bytes have no second dollar sign",
        "bytes need a type around them, as in TEXT($41$)",
        "this text has no second quote",
        "a value is expected here",
        "its type cannot hold this value",
        "a ')' is expected here",
        "a ',' or ']' is expected here",
        "a ',' or '}' is expected here",
        "a keyword is expected here",
        "a ':' is expected between keyword and value",
        "a list has no other type",
        "@ stands for an argument of a program; write the value itself"};
    const size_t code = inError.fError;
    return kSentences[code < std::size(kSentences) ? code : 0];
}

// The line with the mistake and a mark under it. The text in MacRoman has a byte for a character.
void ShowPlace(const std::string& inText, size_t inPosition) {
    const size_t before = inText.rfind('\n', inPosition == 0 ? 0 : inPosition - 1);
    const size_t begin = before == inText.npos || before >= inPosition ? 0 : before + 1;
    const size_t end = std::min(inText.find('\n', begin), inText.size());
    std::string line = inText.substr(begin, end - begin);
    std::ranges::replace(line, '\t', ' ');
    const UInt8* bytes = reinterpret_cast<const UInt8*>(line.data());
    const CFStringRef string = CFStringCreateWithBytes(
        nullptr, bytes, static_cast<CFIndex>(line.size()), kCFStringEncodingMacRoman, false);
    std::string utf8(line.size() * 4 + 1, '\0');
    CFStringGetCString(string, utf8.data(), static_cast<CFIndex>(utf8.size()),
                       kCFStringEncodingUTF8);
    CFRelease(string);
    std::fprintf(stderr, "  %s\n  %*s^\n", utf8.c_str(), static_cast<int>(inPosition - begin), "");
}

[[noreturn]] void ThrowMistake(const std::string& inText, const AEBuildError& inError, bool inJson,
                               const char* inSentence) {
    if (!inJson) ShowPlace(inText, inError.fErrorPos);
    throw Failure("At character " + std::to_string(inError.fErrorPos + 1) + ": " + inSentence,
                  errAEBuildSyntaxError, kBadUsage);
}

// Where an argument of a program is asked for; nobody gives one here.
size_t ArgumentIn(const std::string& inText) {
    char quote = 0;
    for (size_t i = 0; i < inText.size(); ++i) {
        if (quote == 0 && inText[i] == '@') return i;
        if (quote == 0 && (inText[i] == '"' || inText[i] == '\''))
            quote = inText[i];
        else if (inText[i] == quote)
            quote = 0;
    }
    return inText.npos;
}

// Calls inBuild(text, error) with what a program without arguments may be given.
template <typename Build>
void Building(const std::string& inUtf8, bool inJson, Build inBuild) {
    const std::string text = MacRoman(inUtf8);
    const size_t argument = ArgumentIn(text);
    AEBuildError error = {aeBuildSyntaxUncoercedDoubleAt, static_cast<UInt32>(argument)};
    if (argument != text.npos) ThrowMistake(text, error, inJson, SentenceFor(error));
    const OSStatus status = inBuild(text.c_str(), &error);
    if (status == errAEBuildSyntaxError) ThrowMistake(text, error, inJson, SentenceFor(error));
    if (status != noErr) throw Failure("A value cannot be made of this text", status, kBadUsage);
}

}  // namespace

void AddParameters(const std::string& inText, bool inJson, StAEDescriptor& ioEvent) {
    Building(inText, inJson, [&](const char* inMacRoman, AEBuildError* outError) {
        return AEBuildParameters(ioEvent, outError, inMacRoman);
    });
}

void MakeValue(const std::string& inText, bool inJson, StAEDescriptor& outValue) {
    Building(inText, inJson, [&](const char* inMacRoman, AEBuildError* outError) {
        return AEBuildDesc(outValue, outError, inMacRoman);
    });
}

}  // namespace cli
