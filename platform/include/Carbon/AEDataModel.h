#ifndef CARBON_AEDATAMODEL_H
#define CARBON_AEDATAMODEL_H

#include <Carbon/MacTypes.h>

#endif
