// Events to any program: from text, sent, and what comes back shown.
#pragma once

#include <Carbon/Carbon.h>

#include <string>

#include "Vocabulary.h"
#include "vantor/appleevents/StAEDescriptor.h"

namespace cli {

struct SendOptions {
    bool awaitsReply = true;
    double seconds = 60;  // 0: for ever
};

void MakeEvent(const ProcessSerialNumber& inTarget, AEEventClass inClass, AEEventID inID,
               StAEDescriptor& outEvent);

// Text in the build syntax, UTF-8, with names where codes may stand.
struct Source {
    const std::string& text;
    const Vocabulary& words;
    const EventTerm* event;  // whose parameters they are, or null
    bool isJson;             // mistakes are not shown in their place then
};

// A mistake is shown with a mark under its place, on standard error unless that is for JSON, and
// thrown as a Failure.
void AddParameters(const Source& inSource, StAEDescriptor& ioEvent);
void MakeValue(const Source& inSource, StAEDescriptor& outValue);

// Throws a Failure when the event could not be sent or was not answered. Without a reply awaited
// that is null.
void Send(const StAEDescriptor& inEvent, const SendOptions& inOptions, StAEDescriptor& outReply);

// Throws the error that the reply holds, with its text, as a Failure.
void ThrowIfRefused(const StAEDescriptor& inReply);

// In the print syntax, or as JSON; with the names that the words have for its codes.
void Show(const AEDesc* inDesc, const Vocabulary& inWords, bool inJson);

}  // namespace cli
