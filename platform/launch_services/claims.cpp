// Owns reading CFBundleDocumentTypes.
#include "launch_services/claims.h"

#include <CoreFoundation/CoreFoundation.h>

#include <functional>
#include <string_view>

#include "core_foundation/internal.h"
#include "text_utilities/mac_roman.h"

namespace carbon {
namespace {

// The value of a key, if it is of the type that belongs there.
CFTypeRef ValueOf(CFDictionaryRef inFacts, const char* inKey, CFTypeID inType) {
    const CFStringRef key = StringFromUtf8(inKey);
    const CFTypeRef value = CFDictionaryGetValue(inFacts, key);
    CFRelease(key);
    return value != nullptr && CFGetTypeID(value) == inType ? value : nullptr;
}

bool AnyItem(CFTypeRef inArray, CFTypeID inType, const std::function<bool(CFTypeRef)>& inTest) {
    if (inArray == nullptr) return false;
    const auto array = static_cast<CFArrayRef>(inArray);
    for (CFIndex index = 0; index < CFArrayGetCount(array); ++index) {
        const CFTypeRef item = CFArrayGetValueAtIndex(array, index);
        if (CFGetTypeID(item) == inType && inTest(item)) return true;
    }
    return false;
}

bool Names(CFDictionaryRef inClaim, const char* inKey, const std::string& inText,
           CFStringCompareFlags inFlags) {
    const CFStringRef wanted = StringFromUtf8(inText);
    const bool named = wanted != nullptr &&
                       AnyItem(ValueOf(inClaim, inKey, CFArrayGetTypeID()), CFStringGetTypeID(),
                               [&](CFTypeRef item) {
                                   return CFStringCompare(static_cast<CFStringRef>(item), wanted,
                                                          inFlags) == kCFCompareEqualTo;
                               });
    if (wanted != nullptr) CFRelease(wanted);
    return named;
}

std::string TextOfCode(OSType inCode) {
    const char bytes[] = {char(inCode >> 24), char(inCode >> 16), char(inCode >> 8), char(inCode)};
    return Utf8FromMacRoman({bytes, sizeof bytes});
}

// A claim without a role counts for each of them.
bool HasRole(CFDictionaryRef inClaim, LSRolesMask inRoles) {
    const auto role =
        static_cast<CFStringRef>(ValueOf(inClaim, "CFBundleTypeRole", CFStringGetTypeID()));
    if (role == nullptr) return true;
    const std::string name = Utf8(role);
    if (name == "Editor") return (inRoles & (kLSRolesEditor | kLSRolesViewer)) != 0;
    if (name == "Viewer") return (inRoles & kLSRolesViewer) != 0;
    if (name == "Shell") return (inRoles & kLSRolesShell) != 0;
    return (inRoles & kLSRolesNone) != 0;
}

struct Document {
    OSType type;
    std::string extension;
    LSRolesMask roles;
};

bool IsClaimed(CFDictionaryRef inClaim, const Document& inDocument) {
    if (!HasRole(inClaim, inDocument.roles)) return false;
    const bool byType = inDocument.type != 0 &&
                        Names(inClaim, "CFBundleTypeOSTypes", TextOfCode(inDocument.type), 0);
    return byType || (!inDocument.extension.empty() &&
                      Names(inClaim, "CFBundleTypeExtensions", inDocument.extension,
                            kCFCompareCaseInsensitive));
}

}  // namespace

bool ClaimsDocument(const std::string& inBundle, OSType inType, const std::string& inExtension,
                    LSRolesMask inRoles) {
    const CFURLRef url = UrlFromPath(inBundle, true);
    const CFBundleRef bundle = url == nullptr ? nullptr : CFBundleCreate(nullptr, url);
    if (url != nullptr) CFRelease(url);
    if (bundle == nullptr) return false;
    const CFDictionaryRef facts = CFBundleGetInfoDictionary(bundle);
    const bool claimed =
        facts != nullptr && AnyItem(ValueOf(facts, "CFBundleDocumentTypes", CFArrayGetTypeID()),
                                    CFDictionaryGetTypeID(), [&](CFTypeRef claim) {
                                        return IsClaimed(static_cast<CFDictionaryRef>(claim),
                                                         {inType, inExtension, inRoles});
                                    });
    CFRelease(bundle);
    return claimed;
}

}  // namespace carbon
