#ifndef CARBON_AEREGISTRY_H
#define CARBON_AEREGISTRY_H

#include <Carbon/MacTypes.h>

#endif
