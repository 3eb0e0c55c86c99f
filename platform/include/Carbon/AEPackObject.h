#ifndef CARBON_AEPACKOBJECT_H
#define CARBON_AEPACKOBJECT_H

#include <Carbon/MacTypes.h>

#endif
