// Events on standard error, for those who set AEDebugSends or AEDebugReceives.
#pragma once

#include <Carbon/AEDataModel.h>

namespace carbon {

// Whether the environment had the variable, other than empty or "0", when it was first looked at.
// Asked once for each event, so it costs a comparison.
bool PrintsSends();
bool PrintsReceives();

// A line with this program's name and process ID: what happens, then the event in the syntax of
// AEBuildDesc. errno stays.
void DebugPrint(const char* inWhat, const AppleEvent& inEvent);

// What came of a send: the reply, the error, or nothing where no reply was awaited.
void DebugPrintOutcome(OSErr inResult, const AppleEvent* inReply);

}  // namespace carbon
