// Reads values and parameters from the command line and shows where they cannot be read.
#include <algorithm>
#include <cstddef>
#include <cstdio>

#include "Codes.h"
#include "Failure.h"
#include "Message.h"
#include "NamedText.h"

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

bool IsFirstOfCharacter(char inByte) {
    return (static_cast<UInt8>(inByte) & 0xC0) != 0x80;
}

// Where a character begins, the end of the text if it has fewer.
size_t OffsetOf(const std::string& inUtf8, size_t inCharacter) {
    size_t at = 0, left = inCharacter + 1;
    while (at < inUtf8.size() && (left -= IsFirstOfCharacter(inUtf8[at])) > 0) ++at;
    return at;
}

// The line with the mistake and a mark under it.
void ShowPlace(const std::string& inText, size_t inCharacter) {
    const size_t offset = OffsetOf(inText, inCharacter);
    const size_t before = inText.rfind('\n', offset == 0 ? 0 : offset - 1);
    const size_t begin = before == inText.npos || before >= offset ? 0 : before + 1;
    const size_t end = std::min(inText.find('\n', begin), inText.size());
    std::string line = inText.substr(begin, end - begin);
    std::ranges::replace(line, '\t', ' ');
    const auto column =
        std::count_if(inText.begin() + static_cast<std::ptrdiff_t>(begin),
                      inText.begin() + static_cast<std::ptrdiff_t>(offset), IsFirstOfCharacter);
    std::fprintf(stderr, "  %s\n  %*s^\n", line.c_str(), static_cast<int>(column), "");
}

[[noreturn]] void ThrowMistake(const Source& inSource, size_t inCharacter, SInt32 inCode,
                               const std::string& inSentence) {
    if (!inSource.isJson) ShowPlace(inSource.text, inCharacter);
    throw Failure("At character " + std::to_string(inCharacter + 1) + ": " + inSentence, inCode,
                  kBadUsage);
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

CodedText Coded(const Source& inSource) try {
    return WithCodes(inSource.text, inSource.words, inSource.event);
} catch (const UnknownName& unknown) {
    ThrowMistake(inSource, unknown.Place(), unknown.Code(), unknown.what());
}

// Calls inBuild(text, error) with what a program without arguments may be given.
template <typename Build>
void Building(const Source& inSource, Build inBuild) {
    const CodedText coded = Coded(inSource);
    const std::string text = MacRoman(coded.text);  // a byte for a character
    const size_t argument = ArgumentIn(text);
    AEBuildError error = {aeBuildSyntaxUncoercedDoubleAt, static_cast<UInt32>(argument)};
    const OSStatus status =
        argument != text.npos ? errAEBuildSyntaxError : inBuild(text.c_str(), &error);
    if (status == errAEBuildSyntaxError)
        ThrowMistake(inSource, coded.PlaceOf(error.fErrorPos), status, SentenceFor(error));
    if (status != noErr) throw Failure("A value cannot be made of this text", status, kBadUsage);
}

}  // namespace

void AddParameters(const Source& inSource, StAEDescriptor& ioEvent) {
    Building(inSource, [&](const char* inMacRoman, AEBuildError* outError) {
        return AEBuildParameters(ioEvent, outError, inMacRoman);
    });
}

void MakeValue(const Source& inSource, StAEDescriptor& outValue) {
    Building(inSource, [&](const char* inMacRoman, AEBuildError* outError) {
        return AEBuildDesc(outValue, outError, inMacRoman);
    });
}

}  // namespace cli
