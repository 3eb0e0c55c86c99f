// The names of Info.plist's usual keys.
#include <CoreFoundation/CFBundle.h>

#include "core_foundation/strings/string_object.h"

using carbon::Constant;

constinit const CFStringRef kCFBundleInfoDictionaryVersionKey =
    Constant<u"CFBundleInfoDictionaryVersion">();
constinit const CFStringRef kCFBundleExecutableKey = Constant<u"CFBundleExecutable">();
constinit const CFStringRef kCFBundleIdentifierKey = Constant<u"CFBundleIdentifier">();
constinit const CFStringRef kCFBundleVersionKey = Constant<u"CFBundleVersion">();
constinit const CFStringRef kCFBundleDevelopmentRegionKey =
    Constant<u"CFBundleDevelopmentRegion">();
constinit const CFStringRef kCFBundleNameKey = Constant<u"CFBundleName">();
