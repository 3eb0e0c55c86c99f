#ifndef CARBON_STRINGCOMPARE_H
#define CARBON_STRINGCOMPARE_H

#include <Carbon/MacTypes.h>

#endif
