/* What the host in C offers the tests. */
#ifndef HOST_H
#define HOST_H

#include <Carbon/Carbon.h>

#ifdef __cplusplus
extern "C" {
#endif

AEIdleUPP HostsIdleFunction(void);
void SetIdleFunctionFromC(AEIdleUPP idle);
SInt32 CallEverythingFromC(void); /* how many status calls failed */

#ifdef __cplusplus
}
#endif

#endif
