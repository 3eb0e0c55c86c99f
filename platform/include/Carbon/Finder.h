#ifndef CARBON_FINDER_H
#define CARBON_FINDER_H

#include <Carbon/MacTypes.h>

#endif
