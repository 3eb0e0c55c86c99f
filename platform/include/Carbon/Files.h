#ifndef CARBON_FILES_H
#define CARBON_FILES_H

#include <Carbon/MacTypes.h>

#endif
