// Owns the questions for applications and the registration of bundles.
#include <Carbon/LSInfo.h>
#include <Carbon/MacErrors.h>

#include <strings.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "core_foundation/internal.h"
#include "file_manager/catalog/catalog.h"
#include "launch_services/applications.h"
#include "launch_services/claims.h"
#include "launch_services/registered.h"
#include "posix/os_err.h"

namespace carbon {
namespace {

constexpr OSType kAny = 0x3F3F3F3F;  // four question marks, what others write for 0

OSType Specified(OSType inCode) {
    return inCode == kAny ? 0 : inCode;
}

std::string TextOf(CFStringRef inString) {
    return inString == nullptr ? std::string() : Utf8(inString);
}

bool EqualsWithoutCase(const std::string& inA, const std::string& inB) {
    const CFStringRef a = StringFromUtf8(inA), b = StringFromUtf8(inB);
    const bool equal = a != nullptr && b != nullptr &&
                       CFStringCompare(a, b, kCFCompareCaseInsensitive) == kCFCompareEqualTo;
    if (a != nullptr) CFRelease(a);
    if (b != nullptr) CFRelease(b);
    return equal;
}

template <typename Test>
const Application* FindApplication(const ApplicationList& inList, Test inTest) {
    const auto found = std::find_if(inList.begin(), inList.end(), inTest);
    return found == inList.end() ? nullptr : &*found;
}

const Application* WithCreator(const ApplicationList& inList, OSType inCreator) {
    if (inCreator == 0) return nullptr;
    return FindApplication(
        inList, [&](const Application& each) { return each.facts->creator == inCreator; });
}

const Application* WithIdentifier(const ApplicationList& inList, const std::string& inIdentifier) {
    if (inIdentifier.empty()) return nullptr;
    return FindApplication(inList, [&](const Application& each) {
        return EqualsWithoutCase(each.facts->identifier, inIdentifier);
    });
}

const Application* WithName(const ApplicationList& inList, const std::string& inName) {
    if (inName.empty()) return nullptr;
    return FindApplication(inList, [&](const Application& each) {
        const std::filesystem::path path = each.path;
        return EqualsWithoutCase(path.filename().string(), inName) ||
               EqualsWithoutCase(path.stem().string(), inName);
    });
}

const Application* ForDocument(const ApplicationList& inList, OSType inType,
                               const std::string& inExtension, LSRolesMask inRoles) {
    if (inType == 0 && inExtension.empty()) return nullptr;
    return FindApplication(inList, [&](const Application& each) {
        return ClaimsDocument(each.path, inType, inExtension, inRoles);
    });
}

OSStatus Answer(const Application* inFound, FSRef* outRef, CFURLRef* outUrl) {
    if (inFound == nullptr) return kLSApplicationNotFoundErr;
    if (outRef != nullptr && inFound->refErr != noErr) return inFound->refErr;
    if (outRef != nullptr) *outRef = inFound->ref;
    if (outUrl == nullptr) return noErr;
    *outUrl = inFound->url.get();
    if (*outUrl != nullptr) CFRetain(*outUrl);
    return noErr;
}

// Whether something calls itself a property list and cannot be read as one.
bool HasDamagedPropertyList(const std::string& inBundle) {
    const std::filesystem::path list = std::filesystem::path(inBundle) / "Contents/Info.plist";
    std::error_code error;
    if (!std::filesystem::is_regular_file(list, error)) return false;
    const CFURLRef url = UrlFromPath(inBundle, true);
    const CFBundleRef bundle = url == nullptr ? nullptr : CFBundleCreate(nullptr, url);
    const CFDictionaryRef facts = bundle == nullptr ? nullptr : CFBundleGetInfoDictionary(bundle);
    const bool damaged = facts == nullptr || CFDictionaryGetCount(facts) == 0;
    if (bundle != nullptr) CFRelease(bundle);
    if (url != nullptr) CFRelease(url);
    return damaged;
}

OSStatus Register(const std::string& inPath, bool inUpdate) {
    struct stat facts;
    if (stat(inPath.c_str(), &facts) != 0) return OSErrFromErrno(errno);
    const auto bundle = FactsOfBundle(inPath);
    if (bundle != nullptr && HasDamagedPropertyList(inPath)) return kLSDataErr;
    const bool fits =
        bundle != nullptr && IsApplication(*bundle) && !bundle->executablePath.empty();
    if (!fits) return kLSNoRegistrationInfoErr;
    std::error_code error;
    const std::filesystem::path path = std::filesystem::canonical(inPath, error);
    if (error) return OSErrFromErrno(error.value());
    if (inUpdate) ForgetApplications();
    return AddRegisteredBundle(path.string());
}

}  // namespace
}  // namespace carbon

OSStatus LSGetApplicationForInfo(OSType inType, OSType inCreator, CFStringRef inExtension,
                                 LSRolesMask inRoleMask, FSRef* outAppRef, CFURLRef* outAppURL) {
    const OSType creator = carbon::Specified(inCreator);
    const bool nothingAsked = inType == 0 && inCreator == 0 && inExtension == nullptr;
    if (nothingAsked || (outAppRef == nullptr && outAppURL == nullptr)) return paramErr;
    const auto list = carbon::KnownApplications();
    // Roles say something about documents: an application with the creator is found in any of them.
    const carbon::Application* found = carbon::WithCreator(*list, creator);
    if (found == nullptr) {
        found = carbon::ForDocument(*list, carbon::Specified(inType), carbon::TextOf(inExtension),
                                    inRoleMask);
    }
    return carbon::Answer(found, outAppRef, outAppURL);
}

OSStatus LSFindApplicationForInfo(OSType inCreator, CFStringRef inBundleID, CFStringRef inName,
                                  FSRef* outAppRef, CFURLRef* outAppURL) {
    const bool nothingAsked = inCreator == 0 && inBundleID == nullptr && inName == nullptr;
    if (nothingAsked || (outAppRef == nullptr && outAppURL == nullptr)) return paramErr;
    const auto list = carbon::KnownApplications();
    const carbon::Application* found = carbon::WithIdentifier(*list, carbon::TextOf(inBundleID));
    if (found == nullptr) found = carbon::WithCreator(*list, carbon::Specified(inCreator));
    if (found == nullptr) found = carbon::WithName(*list, carbon::TextOf(inName));
    return carbon::Answer(found, outAppRef, outAppURL);
}

OSStatus LSRegisterURL(CFURLRef inURL, Boolean inUpdate) {
    const auto path = inURL == nullptr ? std::nullopt : carbon::PathFromUrl(inURL);
    return path ? carbon::Register(*path, inUpdate != 0) : OSStatus(paramErr);
}

OSStatus LSRegisterFSRef(const FSRef* inRef, Boolean inUpdate) {
    if (inRef == nullptr) return paramErr;
    std::string path;
    const OSErr err = carbon::PathFromRef(*inRef, &path);
    return err == noErr ? carbon::Register(path, inUpdate != 0) : OSStatus(err);
}
