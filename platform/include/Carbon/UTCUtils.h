#ifndef CARBON_UTCUTILS_H
#define CARBON_UTCUTILS_H

#include <Carbon/MacTypes.h>

#endif
