#ifndef CARBON_NUMBERFORMATTING_H
#define CARBON_NUMBERFORMATTING_H

#include <Carbon/MacTypes.h>

#endif
