#ifndef CARBON_TEXTUTILS_H
#define CARBON_TEXTUTILS_H

#include <Carbon/MacTypes.h>

#endif
