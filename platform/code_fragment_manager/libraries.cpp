// Owns finding shared objects and their symbols through the dynamic loader.
#include "code_fragment_manager/libraries.h"

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

namespace carbon {
namespace {

bool IsNameOf(const std::string& inName, const std::string& inPath) {
    std::string file = inPath.substr(inPath.rfind('/') + 1);
    if (file == inName) return true;
    const size_t ending = file.find(".so");
    if (ending == std::string::npos) return false;
    if (file.substr(0, ending + 3) == inName) return true;
    file.resize(ending);
    return file == inName || file == "lib" + inName;
}

struct Search {
    const std::string& name;
    std::optional<std::string> path;
};

// Called by the loader, which must not see exceptions.
int Visit(dl_phdr_info* inObject, size_t, void* ioSearch) noexcept {
    auto& search = *static_cast<Search*>(ioSearch);
    if (!IsNameOf(search.name, inObject->dlpi_name)) return 0;
    search.path = inObject->dlpi_name;
    return 1;
}

// The loader's own record of a library.
const link_map* MapOf(void* inLibrary) {
    link_map* map = nullptr;
    return dlinfo(inLibrary, RTLD_DI_LINKMAP, &map) == 0 ? map : nullptr;
}

}  // namespace

void CloseLibrary::operator()(void* inLibrary) const {
    dlclose(inLibrary);
}

std::optional<std::string> FindLoadedLibrary(const std::string& inName) {
    if (inName.empty()) return std::nullopt;
    Search search = {inName, std::nullopt};
    dl_iterate_phdr(Visit, &search);
    return search.path;
}

LibraryHold HoldLoadedLibrary(const std::string& inPath) {
    return LibraryHold(dlopen(inPath.c_str(), RTLD_LAZY | RTLD_NOLOAD));
}

LibraryHold LoadLibrary(const std::string& inName) {
    for (const std::string& file : {inName, inName + ".so", "lib" + inName + ".so"})
        if (LibraryHold library(dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL)); library)
            return library;
    return nullptr;
}

std::string PathOf(const LibraryHold& inLibrary) {
    const link_map* const map = MapOf(inLibrary.get());
    return map ? map->l_name : "";
}

std::optional<LibrarySymbol> FindInLibrary(const LibraryHold& inLibrary,
                                           const std::string& inName) {
    void* const address = dlsym(inLibrary.get(), inName.c_str());
    Dl_info info;
    void* owner = nullptr;
    void* entry = nullptr;
    if (!address || !dladdr1(address, &info, &owner, RTLD_DL_LINKMAP)) return std::nullopt;
    if (owner != MapOf(inLibrary.get())) return std::nullopt;
    dladdr1(address, &info, &entry, RTLD_DL_SYMENT);
    const auto* const symbol = static_cast<const ElfW(Sym)*>(entry);
    const int type = symbol ? symbol->st_info & 0xF : STT_NOTYPE;
    return LibrarySymbol{address, type == STT_FUNC || type == STT_GNU_IFUNC};
}

}  // namespace carbon
