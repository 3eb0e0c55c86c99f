// Owns the rules about names on discs.
#include "burn/disc_names.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace recorder {
namespace {

constexpr int kLongestJolietName = 103;

// Bytes of the character that starts here; 0 when it is malformed.
size_t CharacterSize(const std::string& inName, size_t inAt) {
    const auto byte = [&](size_t i) {
        return i < inName.size() ? static_cast<unsigned char>(inName[i]) : 0u;
    };
    const unsigned first = byte(inAt), second = byte(inAt + 1);
    if (first < 0x80) return 1;
    const size_t size = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4) return 0;
    for (size_t i = 1; i < size; ++i)
        if ((byte(inAt + i) & 0xC0) != 0x80) return 0;
    if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F)) return 0;
    if ((first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F)) return 0;
    return size;
}

}  // namespace

int Utf16Units(const std::string& inName, bool* outBeyond) {
    int units = 0;
    *outBeyond = false;
    for (size_t at = 0; at < inName.size();) {
        const size_t size = CharacterSize(inName, at);
        if (size == 0) return -1;
        units += size == 4 ? 2 : 1;
        *outBeyond |= size == 4;
        at += size;
    }
    return units;
}

std::vector<std::string> NamesThatChange(const std::string& inName, const std::string& inPath) {
    bool beyond = false;
    const int units = Utf16Units(inName, &beyond);
    const char* why = nullptr;
    if (units < 0)
        why = "is not UTF-8";
    else if (units > kLongestJolietName)
        why = "has more than 103 characters";
    else if (beyond)
        why = "has characters beyond the first 65,536";
    else if (inName.find_first_of("*:;?\\") != std::string::npos)
        why = "has one of * : ; ? \\";
    if (why == nullptr) return {};
    return {inPath + ": the name " + why + "; systems that read Joliet names show it changed"};
}

std::u16string FoldedName(const std::string& inName) {
    const auto isAscii = [](char character) {
        return static_cast<unsigned char>(character) < 0x80;
    };
    if (std::all_of(inName.begin(), inName.end(), isAscii)) {
        std::u16string folded(inName.begin(), inName.end());
        for (char16_t& unit : folded)
            if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit | 0x20);
        return folded;
    }
    UErrorCode error = U_ZERO_ERROR;
    const icu::Normalizer2* decomposition = icu::Normalizer2::getNFDInstance(error);
    icu::UnicodeString text = icu::UnicodeString::fromUTF8(inName);
    text = decomposition->normalize(text.foldCase(), error);
    return {text.getBuffer(), static_cast<size_t>(text.length())};
}

std::string CutName(const std::string& inName, size_t inBytes) {
    size_t end = 0;
    while (end < inName.size()) {
        const size_t size = CharacterSize(inName, end);
        const size_t next = end + (size == 0 ? 1 : size);
        if (next > inBytes) break;
        end = next;
    }
    return inName.substr(0, end);
}

}  // namespace recorder
