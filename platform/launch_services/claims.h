// Which documents an application declares that it opens.
#pragma once

#include <Carbon/LSInfo.h>

#include <string>

namespace carbon {

// Whether CFBundleDocumentTypes names this type (0: not asked) or extension (empty: not asked) in
// one of these roles.
bool ClaimsDocument(const std::string& inBundle, OSType inType, const std::string& inExtension,
                    LSRolesMask inRoles);

}  // namespace carbon
