// The platform's own call behind one that a test program has put in its place.
#pragma once

#include <dlfcn.h>

// REAL_CALL(MemError)() is the platform's MemError, whatever this program defines under that name.
#define REAL_CALL(name) (reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, #name)))
