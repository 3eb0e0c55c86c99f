#ifndef CARBON_APPLEEVENTS_H
#define CARBON_APPLEEVENTS_H

#include <Carbon/MacTypes.h>

#endif
