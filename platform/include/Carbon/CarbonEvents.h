#ifndef CARBON_CARBONEVENTS_H
#define CARBON_CARBONEVENTS_H

#include <Carbon/MacTypes.h>

#endif
