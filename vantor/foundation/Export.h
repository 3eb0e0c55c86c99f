// Marks what libvantor.so shows to the programs built against it. Usable from C.
#pragma once

#define VANTOR_EXPORT __attribute__((visibility("default")))

#ifdef __cplusplus
#define VANTOR_BEGIN_C extern "C" {
#define VANTOR_END_C }
#else
#define VANTOR_BEGIN_C
#define VANTOR_END_C
#endif
