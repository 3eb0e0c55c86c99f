#ifndef CARBON_NOTIFICATION_H
#define CARBON_NOTIFICATION_H

#include <Carbon/MacTypes.h>

#endif
