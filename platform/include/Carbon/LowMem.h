// Low memory: values that were once at fixed addresses.
#ifndef CARBON_LOWMEM_H
#define CARBON_LOWMEM_H

#include <Carbon/MacTypes.h>

PLATFORM_DECLARATIONS_BEGIN

// The flag of SetResLoad. Neither call changes ResError.
Boolean LMGetResLoad(void);
void LMSetResLoad(Boolean value);

// The code that ResError gives, and a way to set it.
SInt16 LMGetResErr(void);
void LMSetResErr(SInt16 value);

PLATFORM_DECLARATIONS_END

#endif
