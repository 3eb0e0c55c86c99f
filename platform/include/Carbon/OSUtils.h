#ifndef CARBON_OSUTILS_H
#define CARBON_OSUTILS_H

#include <Carbon/MacTypes.h>

#endif
