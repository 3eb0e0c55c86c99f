#ifndef COREFOUNDATION_CFBUNDLE_H
#define COREFOUNDATION_CFBUNDLE_H

#include <Carbon/MacTypes.h>

#endif
