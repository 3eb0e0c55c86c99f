// Owns the table of live resource handles.
#include "resource_manager/registry.h"

#include <mutex>
#include <new>
#include <unordered_map>

#include "memory_manager/internal.h"

namespace carbon {
namespace {

struct Entry {
    UInt16 generation;  // of the handle when it was entered
    LiveResource resource;
};

// Never destroyed: guards in static objects ask for it to the very end.
struct Registry {
    std::mutex mutex;
    std::unordered_map<Handle, Entry> entries;
};

Registry& Resources() {
    static Registry& registry = *new Registry;
    return registry;
}

}  // namespace

bool EnterResource(Handle inHandle, const LiveResource& inResource) {
    const auto generation = HandleGeneration(inHandle);
    if (!generation) return false;
    const std::lock_guard lock(Resources().mutex);
    try {
        Resources().entries.insert_or_assign(inHandle, Entry{*generation, inResource});
    } catch (const std::bad_alloc&) {
        return false;
    }
    MarkAsResource(inHandle, true);
    return true;
}

std::optional<LiveResource> FindResource(Handle inHandle) {
    const auto generation = HandleGeneration(inHandle);
    const std::lock_guard lock(Resources().mutex);
    const auto found = Resources().entries.find(inHandle);
    if (!generation || found == Resources().entries.end()) return std::nullopt;
    if (found->second.generation != *generation) return std::nullopt;
    return found->second.resource;
}

void ForgetResource(Handle inHandle) {
    if (HandleGeneration(inHandle)) MarkAsResource(inHandle, false);
    const std::lock_guard lock(Resources().mutex);
    Resources().entries.erase(inHandle);
}

}  // namespace carbon
