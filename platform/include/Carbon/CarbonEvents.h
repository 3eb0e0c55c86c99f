// The ready-made main loop.
#ifndef CARBON_CARBONEVENTS_H
#define CARBON_CARBONEVENTS_H

#include <Carbon/MacTypes.h>

PLATFORM_DECLARATIONS_BEGIN

// Takes events from the queue and dispatches Apple events, until QuitApplicationEventLoop is
// called. While it runs, an 'aevt'/'quit' event that no handler takes (or whose handler answers
// errAEEventNotHandled) ends it. Loops nest.
void RunApplicationEventLoop(void);

// Makes the innermost RunApplicationEventLoop return once the handler now running is done. Does
// nothing when no loop runs.
void QuitApplicationEventLoop(void);

PLATFORM_DECLARATIONS_END

#endif
