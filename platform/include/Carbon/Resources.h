#ifndef CARBON_RESOURCES_H
#define CARBON_RESOURCES_H

#include <Carbon/MacTypes.h>

#endif
