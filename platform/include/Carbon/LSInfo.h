#ifndef CARBON_LSINFO_H
#define CARBON_LSINFO_H

#include <Carbon/MacTypes.h>

#endif
