// Owns `vantor send`: any event to any program.
#include "Commands.h"
#include "Message.h"
#include "Target.h"

namespace cli {
namespace {

void Make(const SendRequest& inRequest, const ProcessSerialNumber& inTarget,
          StAEDescriptor& outEvent) {
    MakeEvent(inTarget, CodeNamed(inRequest.eventClass), CodeNamed(inRequest.eventID), outEvent);
    AddParameters(inRequest.parameters, inRequest.json, outEvent);
}

}  // namespace

void SendEvent(const SendRequest& inRequest) {
    StAEDescriptor trial, event, reply;
    // A mistake in the text is one whether or not the program runs.
    Make(inRequest, {0, kCurrentProcess}, trial);
    Make(inRequest, TargetNamed(inRequest.target), event);
    Send(event, {inRequest.awaitsReply, inRequest.seconds}, reply);
    if (!inRequest.awaitsReply) return;
    Show(reply, inRequest.json);
    ThrowIfRefused(reply);
}

}  // namespace cli
