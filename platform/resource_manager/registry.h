// Which live handles are resources.
#pragma once

#include <Carbon/MacTypes.h>

namespace carbon {

struct Resource;

// Makes a live handle stand for a resource. False when it is not live or there is no memory.
bool EnterResource(Handle inHandle, Resource* inResource);

// Null for a handle that is plain, not live, or made since at the address of a resource.
Resource* FindResource(Handle inHandle);

// Makes it a plain handle again.
void ForgetResource(Handle inHandle);

}  // namespace carbon
