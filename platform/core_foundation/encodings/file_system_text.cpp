// Strings as names for the file system.
#include <unicode/normalizer2.h>

#include <cstring>

#include "core_foundation/dates_and_locales/icu_text.h"
#include "core_foundation/encodings/encodings.h"
#include "core_foundation/internal.h"

namespace carbon {

namespace {

// UTF-8 with letters decomposed; nothing for what UTF-8 cannot say or a zero inside.
std::optional<std::string> FileSystemBytes(CFStringRef inString) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::Normalizer2* form = icu::Normalizer2::getNFDInstance(error);
    if (U_FAILURE(error) || View(inString).find(u'\0') != std::u16string_view::npos) {
        return std::nullopt;
    }
    const icu::UnicodeString text = form->normalize(LentText(View(inString)), error);
    if (U_FAILURE(error)) return std::nullopt;
    return EncodeAll(View(text), kCFStringEncodingUTF8, 0, false);
}

}  // namespace

}  // namespace carbon

Boolean CFStringGetFileSystemRepresentation(CFStringRef string, char* buffer, CFIndex maxBufLen) {
    const auto bytes = carbon::FileSystemBytes(string);
    if (!bytes || maxBufLen < 0 || bytes->size() + 1 > static_cast<size_t>(maxBufLen)) return false;
    std::memcpy(buffer, bytes->c_str(), bytes->size() + 1);
    return true;
}

// A unit that decomposes takes up to three, of three bytes each.
CFIndex CFStringGetMaximumSizeOfFileSystemRepresentation(CFStringRef string) {
    const SInt64 size = SInt64{CFStringGetLength(string)} * 9 + 1;
    return size > INT32_MAX ? kCFNotFound : static_cast<CFIndex>(size);
}

CFStringRef CFStringCreateWithFileSystemRepresentation(CFAllocatorRef, const char* buffer) {
    return carbon::StringFromUtf8(buffer);
}
