#ifndef CARBON_PROCESSES_H
#define CARBON_PROCESSES_H

#include <Carbon/MacTypes.h>

#endif
