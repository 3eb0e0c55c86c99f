#ifndef CARBON_EVENTS_H
#define CARBON_EVENTS_H

#include <Carbon/MacTypes.h>

#endif
