// Events to any program: from text, sent, and what comes back shown.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

#include "vantor/appleevents/StAEDescriptor.h"

namespace cli {

struct SendOptions {
    bool awaitsReply = true;
    double seconds = 60;  // 0: for ever
};

void MakeEvent(const ProcessSerialNumber& inTarget, AEEventClass inClass, AEEventID inID,
               StAEDescriptor& outEvent);

// In the build syntax, UTF-8. A mistake is shown with a mark under its place, on standard error
// unless that is for JSON, and thrown as a Failure.
void AddParameters(const std::string& inText, bool inJson, StAEDescriptor& ioEvent);
void MakeValue(const std::string& inText, bool inJson, StAEDescriptor& outValue);

// Throws a Failure when the event could not be sent or was not answered. Without a reply awaited
// that is null.
void Send(const StAEDescriptor& inEvent, const SendOptions& inOptions, StAEDescriptor& outReply);

// Throws the error that the reply holds, with its text, as a Failure.
void ThrowIfRefused(const StAEDescriptor& inReply);

// In the print syntax, or as JSON.
void Show(const AEDesc* inDesc, bool inJson);

}  // namespace cli
