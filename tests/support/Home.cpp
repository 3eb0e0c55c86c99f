// Gives a whole test program a home of its own, for suites that look after nothing else in it.
#include "support/TemporaryHome.h"

static const TemporaryHome sHome;
