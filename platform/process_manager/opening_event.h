// The first event of a launched program: kept by the launcher, taken by the program itself, so that
// nothing sent later can overtake it and the launcher need not wait.
#pragma once

#include <Carbon/AEDataModel.h>
#include <Carbon/Processes.h>

namespace carbon {

// The event that launch parameters hold; the caller disposes it. paramErr when they hold none.
OSErr EventFromParameters(const AppParameters& inParameters, AppleEvent* outEvent);

// A copy of the event to be kept for a program, an 'oapp' when there is none.
OSErr MakeOpeningEvent(const AppleEvent* inKept, AppleEvent* outEvent);

// Keeps an event for the process of this number.
OSErr KeepOpeningEvent(UInt32 inNumber, const AppleEvent& inEvent);

// Throws the kept event away, if there is one.
void DropOpeningEvent(UInt32 inNumber);

// Puts the kept event, else an 'oapp', into this process's queue, before all others.
OSErr PostOpeningEvent(UInt32 inNumber, const ProcessSerialNumber& inLauncher);

}  // namespace carbon
