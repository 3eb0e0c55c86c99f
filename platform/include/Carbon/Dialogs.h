#ifndef CARBON_DIALOGS_H
#define CARBON_DIALOGS_H

#include <Carbon/MacTypes.h>

#endif
