// Takes the text of values apart.
#include "TextWalk.h"

#include <cctype>
#include <string_view>

namespace cli {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kPunctuation = "{}[]():,'\"@$&~\\-";

bool IsOfWord(char inCharacter) {
    const auto byte = static_cast<UInt8>(inCharacter);
    return byte > ' ' && byte != 0x7F && kPunctuation.find(inCharacter) == kPunctuation.npos;
}

bool IsDigit(char inCharacter) {
    return inCharacter >= '0' && inCharacter <= '9';
}

// The keys of the records that object specifiers are made of; nobody's properties.
bool IsOfObjectModel(OSType inType) {
    return inType == typeObjectSpecifier || inType == typeCompDescriptor ||
           inType == typeLogicalDescriptor || inType == typeRangeDescriptor;
}

bool IsCodeType(OSType inType) {
    return inType == typeType || inType == typeProperty || inType == typeKeyword;
}

}  // namespace

bool IsFirstOfCharacter(char inByte) {
    return (static_cast<UInt8>(inByte) & 0xC0) != 0x80;
}

char TextWalk::Next(size_t inEnd) const {
    const size_t next = mText.find_first_not_of(kBlanks, inEnd);
    return next != mText.npos ? mText[next] : '\0';
}

bool TextWalk::IsInObjectModel() const {
    return !mOpened.empty() && IsOfObjectModel(mOpened.back().type);
}

WordPlace TextWalk::PlaceOf(size_t inEnd) const {
    if (IsKey(inEnd)) return WordPlace::kProperty;
    if (IsType(inEnd)) return WordPlace::kClass;
    if (!mOpened.empty() && mOpened.back().bracket == '(' && IsCodeType(mOpened.back().type))
        return IsUnder(keyAEDesiredClass) ? WordPlace::kClass : WordPlace::kType;
    return WordPlace::kValue;
}

size_t TextWalk::EndOf(char inQuote) const {
    const size_t end = mText.find(inQuote, mAt + 1);
    return end == mText.npos ? mText.size() : end + 1;
}

// 0 for what is no name in angle brackets, such as a comparison.
size_t TextWalk::EndOfBrackets(size_t inAt) const {
    const auto isLetter = [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; };
    if (inAt + 1 >= mText.size() || mText[inAt] != '<' ||
        !(isLetter(mText[inAt + 1]) || static_cast<UInt8>(mText[inAt + 1]) >= 0x80))
        return 0;
    const size_t end = mText.find_first_of("<>\"\n{}[]", inAt + 1);
    return end != mText.npos && mText[end] == '>' ? end + 1 : 0;
}

size_t TextWalk::EndOfWord() const {
    size_t end = mAt;
    while (end < mText.size() && IsOfWord(mText[end]) && (end == mAt || EndOfBrackets(end) == 0))
        ++end;
    return end;
}

void TextWalk::Punctuation() {
    const char character = mText[mAt];
    if (std::string_view("{[(").find(character) != std::string_view::npos)
        mOpened.push_back({character, mCode});
    if (std::string_view("}])").find(character) != std::string_view::npos && !mOpened.empty())
        mOpened.pop_back();
    if (character == ':') mKey = mCode;
    if (character == ',') mKey = 0;
    if (kBlanks.find(character) == kBlanks.npos) mCode = 0;
    Copy(mAt + 1);
}

void TextWalk::Step() {
    const char character = mText[mAt];
    if (character == '"' || character == '$') return Copy(EndOf(character));
    if (character == '\'') return QuotedCodeAt(EndOf(character));
    if (const size_t end = EndOfBrackets(mAt)) return BracketsAt(end);
    if (IsDigit(character)) return Copy(EndOfWord());
    if (IsOfWord(character)) return WordAt(EndOfWord());
    Punctuation();
}

}  // namespace cli
