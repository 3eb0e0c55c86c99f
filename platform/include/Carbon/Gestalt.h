#ifndef CARBON_GESTALT_H
#define CARBON_GESTALT_H

#include <Carbon/MacTypes.h>

#endif
