// Bundle objects: one for each folder, as long as anyone holds it.
#include <CoreFoundation/CFBundle.h>

#include <unistd.h>

#include <climits>
#include <unordered_map>

#include "core_foundation/bundles/bundle_contents.h"
#include "core_foundation/strings/string_object.h"
#include "posix/across_forks.h"

struct __CFBundle : carbon::Object {
    explicit __CFBundle(std::shared_ptr<const carbon::BundleContents> inContents)
        : Object(carbon::kBundleKind), mContents(std::move(inContents)) {}

    std::u16string Describe() const final {
        const carbon::Owned<CFStringRef> path(carbon::StringFromUtf8(mContents->path));
        return u"<CFBundle " +
               (path ? std::u16string(carbon::View(path.Get())) : std::u16string()) + u">";
    }

    const std::shared_ptr<const carbon::BundleContents> mContents;

  protected:
    ~__CFBundle() = default;
};

namespace carbon {

namespace {

// The living bundles by path. A bundle takes itself out before it goes.
struct BundleTable {
    std::mutex lock;
    std::unordered_map<std::string, __CFBundle*> bundles;
};

BundleTable& Bundles() {
    static auto* table = new BundleTable;
    return *table;
}

const HeldAcrossForks sHeld(Bundles().lock);

class Bundle final : public __CFBundle {
  public:
    using __CFBundle::__CFBundle;

  private:
    void Destroy() const override {
        BundleTable& table = Bundles();
        {
            const std::lock_guard guard(table.lock);
            const auto found = table.bundles.find(mContents->path);
            if (found != table.bundles.end() && found->second == this) table.bundles.erase(found);
        }
        delete this;
    }
};

CFBundleRef BundleAt(const std::string& inPath) {
    const auto contents = ContentsOfBundle(inPath);
    if (!contents) return nullptr;
    BundleTable& table = Bundles();
    const std::lock_guard guard(table.lock);
    auto& known = table.bundles[inPath];
    if (!known || !known->RetainIfAlive()) known = new Bundle(contents);
    return known;
}

const BundleContents* ContentsOf(CFBundleRef inBundle) {
    const auto* bundle = inBundle ? OfKind<__CFBundle>(inBundle, kBundleKind) : nullptr;
    return bundle ? bundle->mContents.get() : nullptr;
}

std::string ParentOf(const std::string& inPath) {
    return inPath.substr(0, inPath.rfind('/'));
}

std::string LastNameOf(const std::string& inPath) {
    return inPath.substr(inPath.rfind('/') + 1);
}

// Contents/Linux/program is in the bundle two folders up; any other program is in its own folder.
std::string PathOfMainBundle() {
    char buffer[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", buffer, sizeof buffer);
    if (length <= 0) return {};
    const std::string folder = ParentOf(std::string(buffer, static_cast<size_t>(length)));
    const std::string name = LastNameOf(folder), contents = ParentOf(folder);
    const bool isInBundle =
        (name == "Linux" || name == "MacOS") && LastNameOf(contents) == "Contents";
    return isInBundle ? ParentOf(contents) : folder;
}

}  // namespace

}  // namespace carbon

using carbon::ContentsOf;

CFTypeID CFBundleGetTypeID() {
    return carbon::kBundleKind;
}

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef bundleURL) {
    return carbon::OrNull([&]() -> CFBundleRef {
        const auto path = bundleURL ? carbon::PathFromUrl(bundleURL) : std::nullopt;
        return path ? carbon::BundleAt(*path) : nullptr;
    });
}

CFBundleRef CFBundleGetMainBundle() {
    static const CFBundleRef main =
        carbon::OrNull([] { return carbon::BundleAt(carbon::PathOfMainBundle()); });
    return main;
}

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID) {
    if (!bundleID) return nullptr;
    const std::string identifier = carbon::Utf8(bundleID);
    carbon::BundleTable& table = carbon::Bundles();
    const std::lock_guard guard(table.lock);
    for (const auto& [path, bundle] : table.bundles) {
        const std::string& known = bundle->mContents->facts.identifier;
        if (!known.empty() && known == identifier) return bundle;
    }
    return nullptr;
}

void CFBundleGetPackageInfo(CFBundleRef bundle, UInt32* packageType, UInt32* packageCreator) {
    const auto* contents = ContentsOf(bundle);
    const bool isPackage = contents && contents->facts.isPackage;
    if (packageType) *packageType = isPackage ? contents->facts.type : 'BNDL';
    if (packageCreator) *packageCreator = isPackage ? contents->facts.creator : '?\?\?\?';
}

Boolean CFBundleGetPackageInfoInDirectory(CFURLRef url, UInt32* packageType,
                                          UInt32* packageCreator) {
    const auto path = url ? carbon::PathFromUrl(url) : std::nullopt;
    const auto facts = path ? carbon::FactsOfBundle(*path) : nullptr;
    if (!facts || !facts->isPackage) return false;
    if (packageType) *packageType = facts->type;
    if (packageCreator) *packageCreator = facts->creator;
    return true;
}

UInt32 CFBundleGetVersionNumber(CFBundleRef bundle) {
    const auto* contents = ContentsOf(bundle);
    return contents ? contents->facts.versionNumber : 0;
}

CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
    const auto* contents = ContentsOf(bundle);
    if (!contents || !key) return nullptr;
    const CFDictionaryRef localized = contents->Localized();
    const CFTypeRef value = localized ? CFDictionaryGetValue(localized, key) : nullptr;
    return value ? value : CFDictionaryGetValue(contents->info.Get(), key);
}

CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle) {
    const auto* contents = ContentsOf(bundle);
    return contents ? contents->info.Get() : nullptr;
}

CFDictionaryRef CFBundleGetLocalInfoDictionary(CFBundleRef bundle) {
    const auto* contents = ContentsOf(bundle);
    return contents ? contents->Localized() : nullptr;
}

CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) {
    const auto* contents = ContentsOf(bundle);
    if (!contents) return nullptr;
    const CFTypeRef value = CFDictionaryGetValue(contents->info.Get(), kCFBundleIdentifierKey);
    return value && CFGetTypeID(value) == carbon::kStringKind ? static_cast<CFStringRef>(value)
                                                              : nullptr;
}

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
    const auto* contents = ContentsOf(bundle);
    return contents ? carbon::UrlFromPath(contents->path, true) : nullptr;
}

CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle) {
    const auto* contents = ContentsOf(bundle);
    return contents ? carbon::UrlFromPath(contents->facts.executablePath, false) : nullptr;
}
