// The event queue of this process: what a program's main loop waits on.
//
// There is no screen here, so the queue holds Apple events, suspend and resume notices and null
// events; the other kinds keep their numbers for programs that switch over them.
#ifndef CARBON_EVENTS_H
#define CARBON_EVENTS_H

#include <Carbon/MacTypes.h>
#include <Carbon/Quickdraw.h>

typedef UInt16 EventKind;
typedef UInt16 EventMask;
typedef UInt16 EventModifiers;

// EventRecord.what
enum {
    nullEvent = 0,
    mouseDown = 1,
    mouseUp = 2,
    keyDown = 3,
    keyUp = 4,
    autoKey = 5,
    updateEvt = 6,
    diskEvt = 7,
    activateEvt = 8,
    osEvt = 15,
    kHighLevelEvent = 23
};

// One bit a kind; a call returns only the kinds its mask holds, the others stay queued.
enum {
    mDownMask = 0x0002,
    mUpMask = 0x0004,
    keyDownMask = 0x0008,
    keyUpMask = 0x0010,
    autoKeyMask = 0x0020,
    updateMask = 0x0040,
    diskMask = 0x0080,
    activMask = 0x0100,
    highLevelEventMask = 0x0400,
    osMask = 0x8000,
    everyEvent = 0xFFFF
};

// An osEvt's message: the kind in its high byte, resumeFlag set when the process came to the front.
enum { mouseMovedMessage = 0x00FA, suspendResumeMessage = 0x0001 };
enum { resumeFlag = 1 };
#define osEvtMessageMask 0xFF000000

#pragma pack(push, 2)

// 16 bytes, in the machine's byte order. For kHighLevelEvent `message` is the event class, and the
// four bytes of `where`, taken as one number of 32 bits, are the event ID.
struct EventRecord {
    EventKind what;
    UInt32 message;
    UInt32 when;  // ticks (1/60 s) on the clock of TickCount
    Point where;
    EventModifiers modifiers;  // always 0: there is no keyboard
};
typedef struct EventRecord EventRecord;

#pragma pack(pop)

PLATFORM_DECLARATIONS_BEGIN

// Takes the next event of a kind in `eventMask` from the queue into `theEvent`, waiting up to
// `sleep` ticks for one. True when there was one; false with a null event after the sleep, or
// earlier when WakeUpProcess was called for this process. mouseRgn is not used and may be null.
// A high-level event is answered by passing the record to AEProcessAppleEvent before the next one
// is taken; left alone, it is refused with errAEEventNotHandled then.
Boolean WaitNextEvent(EventMask eventMask, EventRecord* theEvent, UInt32 sleep, RgnHandle mouseRgn);

// The same without waiting.
Boolean GetNextEvent(EventMask eventMask, EventRecord* theEvent);

// The same without waiting and without taking the event from the queue.
Boolean EventAvail(EventMask eventMask, EventRecord* theEvent);

PLATFORM_DECLARATIONS_END

#endif
