// Owns the table of live resource handles.
#include "resource_manager/registry.h"

#include <new>
#include <unordered_map>

#include "memory_manager/internal.h"

namespace carbon {
namespace {

struct Entry {
    UInt16 generation;  // of the handle when it was entered
    Resource* resource;
};

// Never destroyed: guards in static objects ask for it to the very end.
std::unordered_map<Handle, Entry>& Entries() {
    static auto& entries = *new std::unordered_map<Handle, Entry>;
    return entries;
}

}  // namespace

bool EnterResource(Handle inHandle, Resource* inResource) {
    const auto generation = HandleGeneration(inHandle);
    if (!generation) return false;
    try {
        Entries().insert_or_assign(inHandle, Entry{*generation, inResource});
    } catch (const std::bad_alloc&) {
        return false;
    }
    MarkAsResource(inHandle, true);
    return true;
}

Resource* FindResource(Handle inHandle) {
    const auto generation = HandleGeneration(inHandle);
    const auto found = Entries().find(inHandle);
    if (!generation || found == Entries().end()) return nullptr;
    return found->second.generation == *generation ? found->second.resource : nullptr;
}

void ForgetResource(Handle inHandle) {
    if (HandleGeneration(inHandle)) MarkAsResource(inHandle, false);
    Entries().erase(inHandle);
}

}  // namespace carbon
