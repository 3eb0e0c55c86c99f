// How the platform's headers declare what the shared library offers: C linkage, visible, whatever
// the including program's own defaults are.
#ifndef PLATFORM_DECLARATIONS_H
#define PLATFORM_DECLARATIONS_H

#ifdef __cplusplus
#define PLATFORM_DECLARATIONS_BEGIN _Pragma("GCC visibility push(default)") extern "C" {
#define PLATFORM_DECLARATIONS_END \
    }                             \
    _Pragma("GCC visibility pop")
#else
#define PLATFORM_DECLARATIONS_BEGIN _Pragma("GCC visibility push(default)")
#define PLATFORM_DECLARATIONS_END _Pragma("GCC visibility pop")
#endif

#endif
