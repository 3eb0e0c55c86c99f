// The library and hosts that close it.
#include <Carbon/Carbon.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <link.h>

namespace {

UInt64 FlagsOf(const char* inLibrary) {
    void* library = dlopen(inLibrary, RTLD_NOW | RTLD_NOLOAD);
    link_map* map = nullptr;
    if (!library || dlinfo(library, RTLD_DI_LINKMAP, &map) != 0) return 0;
    UInt64 flags = 0;
    for (const ElfW(Dyn)* entry = map->l_ld; entry->d_tag != DT_NULL; ++entry)
        if (entry->d_tag == DT_FLAGS_1) flags = entry->d_un.d_val;
    dlclose(library);
    return flags;
}

// A timer's thread, or the signal's next fault, would find no code.
TEST(Unloading, LeavesTheLibraryInItsPlace) {
    static_cast<void>(TickCount());  // linked, and so loaded
    EXPECT_TRUE(FlagsOf("libvantorplatform.so.1") & DF_1_NODELETE);
}

}  // namespace
