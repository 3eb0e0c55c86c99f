#ifndef COREFOUNDATION_CFDATE_H
#define COREFOUNDATION_CFDATE_H

#include <Carbon/MacTypes.h>

#endif
