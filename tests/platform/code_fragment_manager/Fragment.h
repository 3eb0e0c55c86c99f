// Loads the library beside the running test for a scope.
#pragma once

#include <dlfcn.h>

#include <stdexcept>

#include "support/Command.h"

class LoadedFragment {
  public:
    LoadedFragment() : mLibrary(dlopen(Path().c_str(), RTLD_NOW | RTLD_LOCAL)) {
        if (!mLibrary) throw std::runtime_error(dlerror());
    }
    ~LoadedFragment() { dlclose(mLibrary); }
    LoadedFragment(const LoadedFragment&) = delete;
    LoadedFragment& operator=(const LoadedFragment&) = delete;

    void* Address(const char* inSymbol) const { return dlsym(mLibrary, inSymbol); }

  private:
    static std::string Path() { return ProgramFolder() + "/libtest_fragment.so"; }

    void* mLibrary;
};
