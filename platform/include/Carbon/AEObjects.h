#ifndef CARBON_AEOBJECTS_H
#define CARBON_AEOBJECTS_H

#include <Carbon/MacTypes.h>

#endif
