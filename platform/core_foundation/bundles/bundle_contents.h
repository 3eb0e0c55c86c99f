// What was read of a bundle, kept while its files stay as they are.
#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "core_foundation/bundles/bundle_layout.h"
#include "core_foundation/internal.h"
#include "core_foundation/object.h"

namespace carbon {

struct BundleContents {
    std::string path;
    BundleLayout layout;
    BundleFacts facts;
    Owned<CFDictionaryRef> info;  // never null

    // InfoPlist.strings in the user's language, read when first asked for; null without one. Kept
    // as long as Info.plist stays what it is.
    CFDictionaryRef Localized() const;

  private:
    mutable std::once_flag mLocalizedRead;
    mutable Owned<CFDictionaryRef> mLocalized;
};

// Null when there is no folder at the path.
std::shared_ptr<const BundleContents> ContentsOfBundle(const std::string& inPath);

// Reads the files, whatever was read before.
std::shared_ptr<const BundleContents> ReadBundle(const std::string& inPath);

// The languages to look for, best first: those of the user's locale under their names new and old,
// then inRegion, then English.
std::vector<std::string> PreferredLanguages(const std::string& inRegion);

}  // namespace carbon
