#ifndef CARBON_AEINTERACTION_H
#define CARBON_AEINTERACTION_H

#include <Carbon/MacTypes.h>

#endif
