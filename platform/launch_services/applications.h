// Every application that Launch Services knows, kept while nothing changes on disk.
#pragma once

#include <Carbon/Files.h>

#include <memory>
#include <string>
#include <vector>

#include "core_foundation/internal.h"

namespace carbon {

struct Application {
    std::string path;  // the bundle's folder
    std::shared_ptr<const BundleFacts> facts;
    OSErr refErr = noErr;  // why there is no reference
    FSRef ref = {};
    std::shared_ptr<const __CFURL> url = nullptr;  // when there is no memory
};

using ApplicationList = std::vector<Application>;

// Newest version first, equal ones in the order of the searched folders. The same object as long as
// nothing has changed, which one system call tells.
std::shared_ptr<const ApplicationList> KnownApplications();

// Makes the next KnownApplications look at everything again.
void ForgetApplications();

// Whether a bundle is one that can be launched, by its type.
bool IsApplication(const BundleFacts& inFacts);

}  // namespace carbon
