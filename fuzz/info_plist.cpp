// Property lists, .strings files and version strings of bundles that anyone may have made.
#include "core_foundation/bundles/version_number.h"
#include "core_foundation/object.h"
#include "core_foundation/property_lists/property_list.h"
#include "core_foundation/strings/string_object.h"

namespace {

void Examine(CFDictionaryRef inOwned) {
    if (!inOwned) return;
    const carbon::Owned<CFDictionaryRef> dictionary(inOwned);
    const carbon::Owned<CFStringRef> text(CFCopyDescription(inOwned));
    const auto version = CFDictionaryGetValue(inOwned, CFSTR("CFBundleVersion"));
    if (version && CFGetTypeID(version) == CFStringGetTypeID()) {
        carbon::VersionNumberFromString(carbon::View(static_cast<CFStringRef>(version)));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inBytes, size_t inSize) {
    const std::string_view bytes(reinterpret_cast<const char*>(inBytes), inSize);
    Examine(carbon::DictionaryFromPropertyList(bytes));
    Examine(carbon::DictionaryFromStringsFile(bytes));
    return 0;
}
