#ifndef CARBON_AEMACH_H
#define CARBON_AEMACH_H

#include <Carbon/MacTypes.h>

#endif
