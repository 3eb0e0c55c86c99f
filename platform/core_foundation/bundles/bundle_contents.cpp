// Reading a bundle: its dictionary, and the facts drawn from it.
#include "core_foundation/bundles/bundle_contents.h"

#include "core_foundation/bundles/version_number.h"
#include "core_foundation/encodings/encodings.h"
#include "core_foundation/property_lists/property_list.h"
#include "core_foundation/strings/string_object.h"

namespace carbon {

namespace {

constexpr OSType kUnknownCreator = '?\?\?\?';

struct ExtensionType {
    const char* extension;
    OSType type;
};

constexpr ExtensionType kExtensionTypes[] = {{".app", 'APPL'},
                                             {".debug", 'APPL'},
                                             {".profile", 'APPL'},
                                             {".service", 'APPL'},
                                             {".framework", 'FMWK'}};

OSType TypeFromExtension(const std::string& inPath) {
    const std::string extension = ExtensionOfBundle(inPath);
    for (const auto& entry : kExtensionTypes) {
        if (extension == entry.extension) return entry.type;
    }
    return 'BNDL';
}

CFTypeRef Value(CFDictionaryRef inInfo, const char* inKey) {
    return CFDictionaryGetValue(inInfo, __CFStringMakeConstantString(inKey));
}

// The string under a key; null when there is none or it is something else.
CFStringRef Text(CFDictionaryRef inInfo, const char* inKey) {
    const CFTypeRef value = Value(inInfo, inKey);
    return value && CFGetTypeID(value) == kStringKind ? static_cast<CFStringRef>(value) : nullptr;
}

std::string TextOr(CFDictionaryRef inInfo, const char* inKey, const std::string& inElse) {
    const CFStringRef text = Text(inInfo, inKey);
    return text ? Utf8(text) : inElse;
}

OSType CodeFromBytes(std::string_view inBytes) {
    OSType code = 0;
    for (const char byte : inBytes.substr(0, 4)) code = code << 8 | static_cast<UInt8>(byte);
    return code;
}

// Four characters that MacRoman has.
std::optional<OSType> Code(CFDictionaryRef inInfo, const char* inKey) {
    const CFStringRef text = Text(inInfo, inKey);
    if (!text || CFStringGetLength(text) != 4) return std::nullopt;
    const auto bytes = EncodeAll(View(text), kCFStringEncodingMacRoman, 0, false);
    if (!bytes || bytes->size() != 4) return std::nullopt;
    return CodeFromBytes(*bytes);
}

bool ReadPackageFile(const std::string& inFile, BundleFacts* outFacts) {
    const auto bytes = inFile.empty() ? std::nullopt : ReadWholeFile(inFile);
    if (!bytes || bytes->size() < 8) return false;
    outFacts->type = CodeFromBytes(*bytes);
    outFacts->creator = CodeFromBytes(std::string_view(*bytes).substr(4));
    return true;
}

void FillPackageInfo(const BundleContents& inContents, BundleFacts* outFacts) {
    outFacts->isPackage = ReadPackageFile(inContents.layout.packageFile, outFacts);
    if (outFacts->isPackage) return;
    const auto type = Code(inContents.info.Get(), "CFBundlePackageType");
    const auto creator = Code(inContents.info.Get(), "CFBundleSignature");
    if (!type && !creator && !inContents.layout.isBundle) return;
    outFacts->isPackage = true;
    outFacts->type = type.value_or(TypeFromExtension(inContents.path));
    outFacts->creator = creator.value_or(kUnknownCreator);
}

UInt32 NumberOf(CFTypeRef inValue) {
    SInt64 number = 0;
    CFNumberGetValue(static_cast<CFNumberRef>(inValue), kCFNumberSInt64Type, &number);
    return static_cast<UInt32>(number);
}

bool IsNumber(CFTypeRef inValue) {
    return inValue && CFGetTypeID(inValue) == kNumberKind;
}

UInt32 VersionNumber(CFDictionaryRef inInfo) {
    const CFTypeRef numeric = Value(inInfo, "CFBundleNumericVersion");
    if (IsNumber(numeric)) return NumberOf(numeric);
    const CFTypeRef version = Value(inInfo, "CFBundleVersion");
    if (IsNumber(version)) return NumberOf(version);
    const CFStringRef text = Text(inInfo, "CFBundleVersion");
    return text ? VersionNumberFromString(View(text)) : 0;
}

Owned<CFDictionaryRef> ReadInfo(const std::string& inFile) {
    const auto bytes = inFile.empty() ? std::nullopt : ReadWholeFile(inFile);
    Owned<CFDictionaryRef> info(bytes ? DictionaryFromPropertyList(*bytes) : nullptr);
    if (info) return info;
    return Owned<CFDictionaryRef>(CFDictionaryCreate(nullptr, nullptr, nullptr, 0,
                                                     &kCFTypeDictionaryKeyCallBacks,
                                                     &kCFTypeDictionaryValueCallBacks));
}

void FillFacts(BundleContents* ioContents) {
    BundleFacts& facts = ioContents->facts;
    const CFDictionaryRef info = ioContents->info.Get();
    FillPackageInfo(*ioContents, &facts);
    const std::string folderName = NameOfBundle(ioContents->path);
    facts.versionNumber = VersionNumber(info);
    facts.versionString =
        TextOr(info, "CFBundleShortVersionString", TextOr(info, "CFBundleVersion", {}));
    facts.name = TextOr(info, "CFBundleName", folderName);
    facts.identifier = TextOr(info, "CFBundleIdentifier", {});
    facts.executablePath =
        ExecutableOfBundle(ioContents->path, TextOr(info, "CFBundleExecutable", folderName));
}

}  // namespace

std::shared_ptr<const BundleContents> ReadBundle(const std::string& inPath) {
    if (!IsFolder(inPath)) return nullptr;
    auto contents = std::make_shared<BundleContents>();
    contents->path = inPath;
    contents->layout = LayoutOfBundle(inPath);
    contents->info = ReadInfo(contents->layout.infoFile);
    FillFacts(contents.get());
    return contents;
}

CFDictionaryRef BundleContents::Localized() const {
    std::call_once(mLocalizedRead, [this] {
        const std::string region = TextOr(info.Get(), "CFBundleDevelopmentRegion", {});
        for (const std::string& language : PreferredLanguages(region)) {
            const std::string folder = layout.resources + "/" + language + ".lproj";
            if (!IsFolder(folder)) continue;
            const auto bytes = ReadWholeFile(folder + "/InfoPlist.strings");
            if (bytes) mLocalized = Owned<CFDictionaryRef>(DictionaryFromStringsFile(*bytes));
            return;
        }
    });
    return mLocalized.Get();
}

}  // namespace carbon
