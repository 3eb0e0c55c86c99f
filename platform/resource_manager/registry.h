// Which live handles are resources, and the result of the last Resource Manager call.
#pragma once

#include <Carbon/MacTypes.h>
#include <Carbon/Resources.h>

#include <optional>

namespace carbon {

struct LiveResource {
    ResFileRefNum file;
    ResAttributes attributes;
};

// Makes a live handle a resource, or changes what is known of one. False when the handle is not
// live or there is no memory.
bool EnterResource(Handle inHandle, const LiveResource& inResource);

// Nothing for a handle that is plain, not live, or made since at the address of a resource.
std::optional<LiveResource> FindResource(Handle inHandle);

// Makes it a plain handle again.
void ForgetResource(Handle inHandle);

void SetResError(OSErr inError);

}  // namespace carbon
