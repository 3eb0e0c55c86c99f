// The names of Info.plist's usual keys.
#include <CoreFoundation/CFBundle.h>

#include "core_foundation/string_object.h"

namespace carbon {

namespace {

constinit const ConstantString sInfoDictionaryVersion(u"CFBundleInfoDictionaryVersion");
constinit const ConstantString sExecutable(u"CFBundleExecutable");
constinit const ConstantString sIdentifier(u"CFBundleIdentifier");
constinit const ConstantString sVersion(u"CFBundleVersion");
constinit const ConstantString sDevelopmentRegion(u"CFBundleDevelopmentRegion");
constinit const ConstantString sName(u"CFBundleName");

}  // namespace

}  // namespace carbon

constinit const CFStringRef kCFBundleInfoDictionaryVersionKey = &carbon::sInfoDictionaryVersion;
constinit const CFStringRef kCFBundleExecutableKey = &carbon::sExecutable;
constinit const CFStringRef kCFBundleIdentifierKey = &carbon::sIdentifier;
constinit const CFStringRef kCFBundleVersionKey = &carbon::sVersion;
constinit const CFStringRef kCFBundleDevelopmentRegionKey = &carbon::sDevelopmentRegion;
constinit const CFStringRef kCFBundleNameKey = &carbon::sName;
