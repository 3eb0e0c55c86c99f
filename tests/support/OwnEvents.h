// Handles every event that the test program sends to itself.
#pragma once

#include <Carbon/Carbon.h>

#include <string>
#include <vector>

#include "support/ScriptedRecorder/EventText.h"
#include "vantor/appleevents/StAEDescriptor.h"

class OwnEvents {
  public:
    OwnEvents() {
        sCurrent = this;
        AEInstallEventHandler(typeWildCard, typeWildCard, Handle, 0, false);
    }
    ~OwnEvents() {
        AERemoveEventHandler(typeWildCard, typeWildCard, Handle, false);
        sCurrent = nullptr;
    }
    OwnEvents(const OwnEvents&) = delete;
    OwnEvents& operator=(const OwnEvents&) = delete;

    OSErr mResult = noErr;               // what the handler returns
    StAEDescriptor mAnswer;              // the reply's direct object, unless null
    std::vector<std::string> mReceived;  // as TextOfEvent writes them

  private:
    static OSErr Handle(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
        sCurrent->mReceived.push_back(TextOfEvent(*inEvent));
        if (sCurrent->mResult != noErr) return sCurrent->mResult;
        const bool hasAnswer = sCurrent->mAnswer.mDesc.descriptorType != typeNull;
        if (!hasAnswer || ioReply->descriptorType == typeNull) return noErr;
        return AEPutParamDesc(ioReply, keyDirectObject, sCurrent->mAnswer);
    }

    static inline OwnEvents* sCurrent = nullptr;
};
