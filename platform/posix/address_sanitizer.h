// Whether this build checks addresses: gcc and clang tell it in two ways.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define PLATFORM_CHECKS_ADDRESSES 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PLATFORM_CHECKS_ADDRESSES 1
#endif
#endif
