#ifndef COREFOUNDATION_CFNUMBER_H
#define COREFOUNDATION_CFNUMBER_H

#include <Carbon/MacTypes.h>

#endif
