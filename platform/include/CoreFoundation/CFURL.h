#ifndef COREFOUNDATION_CFURL_H
#define COREFOUNDATION_CFURL_H

#include <Carbon/MacTypes.h>

#endif
