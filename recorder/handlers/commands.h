// One function for each event: reads its parameters, does it, fills the reply. They throw what
// becomes the reply's error.
#pragma once

#include <Carbon/Carbon.h>

namespace recorder {

struct Recorder;

void HandleGetData(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleSetData(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleCountElements(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleMakeDisc(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleAddItems(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleWrite(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleRequestBlankDisc(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleEject(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleEndSession(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleCancel(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleOpen(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);
void HandleQuit(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply);

}  // namespace recorder
