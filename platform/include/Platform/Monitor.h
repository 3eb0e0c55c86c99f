// Watching the Apple events between the user's processes. Nothing here was ever part of Carbon.
//
// A monitor is told of every AESend of the user's programs, its caller's own included, and of what
// came of it, by the program that sends. Those programs never wait for a monitor: what one does not
// read in time is dropped and counted. The event with which a program is opened is seen as one that
// its launcher sends without waiting. The event that reports the end of one is no send and not
// seen.
#ifndef PLATFORM_MONITOR_H
#define PLATFORM_MONITOR_H

#include <Carbon/AEDataModel.h>
#include <Carbon/MacTypes.h>
#include <Platform/Declarations.h>

PLATFORM_DECLARATIONS_BEGIN

typedef struct OpaquePlatformMonitor* PlatformMonitorRef;

enum {
    kPlatformEventSent = 'sent',      // event: what is sent
    kPlatformEventAnswered = 'rply',  // event: the answer
    kPlatformEventEnded = 'done'      // no answer was wanted, or none came; error says which
};

// One thing that happened. Numbers are the machine's, data in the event is big-endian as ever.
typedef struct PlatformWatchedEvent {
    UInt32 kind;      // one of those above
    SInt32 error;     // the result of AESend, or the error number in the answer; or noErr
    UInt64 exchange;  // with the sender: names an event and what came of it
    ProcessSerialNumber sender;  // of the event, in an answer too
    ProcessSerialNumber target;
    Str31 senderName;  // as the process has it; MacRoman
    Str31 targetName;  // empty when the target was gone already
    SInt64 time;       // when it happened, nanoseconds since the start of 1970, UTC
    SInt64 elapsed;    // nanoseconds since the event was sent; 0 in that itself
    SInt32 replyMode;  // kAENoReply, kAEQueueReply or kAEWaitReply; 0 but for an event sent
    AppleEvent event;  // with the attributes it travels with; the caller's to dispose; null for
                       // kPlatformEventEnded
} PlatformWatchedEvent;

// Begins to watch, as long as the monitor is open.
//   outMonitor  the caller closes it; null after a failure
// Returns paramErr for a null pointer, memFullErr when four monitors are open already (or memory is
// short), permErr when the runtime folder is not the user's own, ioErr.
OSErr PlatformMonitorOpen(PlatformMonitorRef* outMonitor);

// Ends it; null is ignored.
void PlatformMonitorClose(PlatformMonitorRef monitor);

// Gives the next thing that happened. Things that come at once from several programs come in the
// order of their times. For one thread at a time.
//   milliseconds  how long to wait for it; 0 only looks
// Returns errAETimeout when nothing came in that time or a signal was caught, paramErr for a null
// pointer, memFullErr.
OSErr PlatformMonitorNext(PlatformMonitorRef monitor, UInt32 milliseconds,
                          PlatformWatchedEvent* outEvent);

// How many things could not be told to this monitor since the last call, because it did not read
// fast enough.
UInt32 PlatformMonitorMissed(PlatformMonitorRef monitor);

PLATFORM_DECLARATIONS_END

#endif
