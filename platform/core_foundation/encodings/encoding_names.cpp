// What encodings are called, and which there are.
#include <algorithm>
#include <cctype>
#include <map>
#include <mutex>
#include <string>

#include "core_foundation/dates_and_locales/icu_text.h"
#include "core_foundation/encodings/encodings.h"
#include "core_foundation/strings/character_sets.h"
#include "posix/across_forks.h"

namespace carbon {

namespace {

// Those that ICU has no name for, or one that belongs to another encoding.
struct OwnName {
    CFStringEncoding encoding;
    const char* registered;  // on the Internet
};

constexpr OwnName kOwnNames[] = {
    {kCFStringEncodingMacRoman, "macintosh"},
    {kCFStringEncodingASCII, "us-ascii"},
    {kCFStringEncodingISOLatin1, "iso-8859-1"},
    {kCFStringEncodingUTF8, "utf-8"},
    {kCFStringEncodingUTF16, "utf-16"},
    {kCFStringEncodingUTF16BE, "utf-16be"},
    {kCFStringEncodingUTF16LE, "utf-16le"},
    {kCFStringEncodingUTF32, "utf-32"},
    {kCFStringEncodingUTF32BE, "utf-32be"},
    {kCFStringEncodingUTF32LE, "utf-32le"},
    {0x0420, "windows-31j"},
    {0x0423, "cp950"},
};

std::string Lowercase(std::string inText) {
    std::transform(inText.begin(), inText.end(), inText.begin(),
                   [](unsigned char character) { return std::tolower(character); });
    return inText;
}

// Empty for an encoding that is not available or has no such name.
std::string RegisteredName(CFStringEncoding inEncoding) {
    for (const OwnName& name : kOwnNames) {
        if (name.encoding == inEncoding) return name.registered;
    }
    const EncodingTraits traits = TraitsOf(inEncoding);
    if (!traits.converter) return {};
    UErrorCode error = U_ZERO_ERROR;
    const char* name = ucnv_getStandardName(traits.converter, "MIME", &error);
    if (!name) name = ucnv_getStandardName(traits.converter, "IANA", &error);
    return name ? Lowercase(name) : std::string();
}

// ICU's own name for any name of an encoding, so that aliases meet.
std::string ConverterName(const std::string& inName) {
    UErrorCode error = U_ZERO_ERROR;
    const char* name = ucnv_getCanonicalName(inName.c_str(), "IANA", &error);
    if (!name) name = ucnv_getCanonicalName(inName.c_str(), "MIME", &error);
    return name ? name : "";
}

bool HasConverterName(CFStringEncoding inEncoding, const std::string& inName) {
    const std::string name = RegisteredName(inEncoding);
    return !name.empty() && ConverterName(name) == inName;
}

CFStringEncoding EncodingNamed(const std::string& inName) {
    const auto all = AvailableEncodings();
    const std::string name = Lowercase(inName), converter = ConverterName(name);
    auto found = std::find_if(all.begin(), all.end(), [&](CFStringEncoding encoding) {
        return RegisteredName(encoding) == name;
    });
    if (found == all.end() && !converter.empty()) {
        found = std::find_if(all.begin(), all.end(), [&](CFStringEncoding encoding) {
            return HasConverterName(encoding, converter);
        });
    }
    return found == all.end() ? kCFStringEncodingInvalidId : *found;
}

constinit std::mutex sKeptLock;
const HeldAcrossForks sHeld(sKeptLock);

// Names that are lent live as long as the process.
CFStringRef KeptName(CFStringEncoding inEncoding) {
    static auto* names = new std::map<CFStringEncoding, CFStringRef>;
    const std::lock_guard guard(sKeptLock);
    const auto [found, isNew] = names->try_emplace(inEncoding, nullptr);
    if (isNew) {
        const std::string name = RegisteredName(inEncoding);
        if (!name.empty()) found->second = NewAsciiString(name);
    }
    return found->second;
}

const CFStringEncoding* EncodingList() {
    static const auto* list = [] {
        auto* all = new std::vector<CFStringEncoding>(AvailableEncodings());
        all->push_back(kCFStringEncodingInvalidId);
        return all;
    }();
    return list->data();
}

CFStringEncoding Smallest(std::u16string_view inText) {
    for (const CFStringEncoding encoding : {kCFStringEncodingASCII, kCFStringEncodingMacRoman}) {
        if (Encode(inText, encoding, 0, false, nullptr, 0).units == inText.size()) return encoding;
    }
    const EncodeResult utf8 = Encode(inText, kCFStringEncodingUTF8, 0, false, nullptr, 0);
    const bool isShorter = utf8.units == inText.size() && utf8.bytes < 2 * inText.size();
    return isShorter ? kCFStringEncodingUTF8 : kCFStringEncodingUTF16;
}

}  // namespace

}  // namespace carbon

using carbon::OrNull;

const CFStringEncoding* CFStringGetListOfAvailableEncodings() {
    return OrNull([] { return carbon::EncodingList(); });
}

CFStringRef CFStringGetNameOfEncoding(CFStringEncoding encoding) {
    return OrNull([&] { return carbon::KeptName(encoding); });
}

CFStringRef CFStringConvertEncodingToIANACharSetName(CFStringEncoding encoding) {
    return OrNull([&] { return carbon::KeptName(encoding); });
}

CFStringEncoding CFStringConvertIANACharSetNameToEncoding(CFStringRef theString) {
    if (!theString || CFStringGetLength(theString) == 0) return kCFStringEncodingInvalidId;
    return carbon::EncodingNamed(carbon::AsciiText(theString));
}

CFStringEncoding CFStringGetSmallestEncoding(CFStringRef theString) {
    return carbon::Smallest(carbon::View(theString));
}

CFStringEncoding CFStringGetFastestEncoding(CFStringRef) {
    return kCFStringEncodingUTF16;
}
