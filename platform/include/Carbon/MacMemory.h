#ifndef CARBON_MACMEMORY_H
#define CARBON_MACMEMORY_H

#include <Carbon/MacTypes.h>

#endif
