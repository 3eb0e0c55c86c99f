// Owns what each event does.
#include "handlers/commands.h"

#include <algorithm>

#include "burn/BurnFailure.h"
#include "handlers/handlers.h"
#include "handlers/parameters.h"
#include "handlers/properties.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

// What ends so soon is answered at once; a client that waits longer is answered later, and others
// meanwhile.
constexpr int kSoon = 200;  // milliseconds

void PutAnswer(const StAEDescriptor& inValue, AppleEvent& ioReply) {
    ThrowIfError(MoreAEAddResultToReply(inValue, &ioReply, noErr));
}

// 0 when the sender names none.
DescType WantedType(const AppleEvent& inEvent) {
    StAEDescriptor wanted;
    wanted.GetOptionalParamDesc(inEvent, keyAERequestedType, typeType);
    return wanted.mDesc.descriptorType == DescType(typeNull) ? 0 : CodeFrom(wanted);
}

// The value of a property, a specifier for any other object. Hosts that name no type know no UTF-8.
void MakeAnswer(RecorderState& inState, const Object& inObject, DescType inType,
                StAEDescriptor& outValue) {
    if (inObject.property == 0) return MakeSpecifier(inObject, outValue);
    GetProperty(inState, inObject, outValue);
    if (inType != 0)
        ConvertTo(inType, outValue);
    else if (outValue.mDesc.descriptorType == DescType(typeUTF8Text))
        ConvertTo(typeChar, outValue);
}

// One answer, or the list of them.
void AnswerGet(RecorderState& inState, const Objects& inObjects, DescType inType,
               AppleEvent& ioReply) {
    StAEDescriptor answer, list;
    if (inObjects.areMany) ThrowIfError(AECreateList(nullptr, 0, false, list));
    for (const Object& object : inObjects.each) {
        MakeAnswer(inState, object, inType, answer);
        if (inObjects.areMany) ThrowIfError(AEPutDesc(list, 0, answer));
    }
    PutAnswer(inObjects.areMany ? list : answer, ioReply);
}

bool MustWaitForOne(RecorderState& inState, const Objects& inObjects) {
    return std::any_of(inObjects.each.begin(), inObjects.each.end(),
                       [&](const Object& object) { return MustWaitFor(inState, object); });
}

bool HasEnded(RecorderState& inState, const JobEnd& inEnd) {
    inState.Settle();
    return inEnd->has_value();
}

void ThrowJobError(const JobEnd& inEnd) {
    const ProgressSnapshot& end = (*inEnd)->progress;
    if (end.errorCode != noErr) throw BurnFailure(end.errorCode, end.errorText);
}

}  // namespace

void HandleGetData(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply) {
    StAEDescriptor specifier;
    specifier.GetParamDesc(inEvent, keyDirectObject);
    const DescType type = WantedType(inEvent);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    const Objects objects = ResolveObjects(specifier);
    RecorderState& state = inRecorder.state;
    if (!MustWaitForOne(state, objects) || state.Engine().WaitUntilQuiet(kSoon))
        return AnswerGet(state, objects, type, ioReply);
    inRecorder.late.Suspend(
        inEvent, ioReply, [&state, objects] { return !MustWaitForOne(state, objects); },
        [&state, objects, type](AppleEvent* reply) { AnswerGet(state, objects, type, *reply); });
}

void HandleSetData(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    StAEDescriptor specifier, value;
    specifier.GetParamDesc(inEvent, keyDirectObject);
    value.GetParamDesc(inEvent, keyAEData);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    const Objects objects = ResolveObjects(specifier);
    for (const Object& object : objects.each) {
        if (object.property == 0) LException::Throw(errAENotModifiable);
        SetProperty(inRecorder.state, object, value);
    }
}

void HandleCountElements(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply) {
    StAEDescriptor container, wanted, count;
    container.GetOptionalParamDesc(inEvent, keyDirectObject);
    wanted.GetParamDesc(inEvent, keyAEObjectClass, typeType);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    const Objects containers = ResolveObjects(container);
    SInt32 number = 0;
    for (const Object& object : containers.each)
        number += CountElements(inRecorder.state, CodeFrom(wanted), object);
    MakeNumber(number, count);
    PutAnswer(count, ioReply);
}

void HandleMakeDisc(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    StAEDescriptor kind;
    kind.GetParamDesc(inEvent, keyAEObjectClass, typeType);
    Accept(inEvent, keyAEInsertHere);
    Accept(inEvent, keyAEPropData);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    inRecorder.state.MakeDisc(CodeFrom(kind));
}

// The direct object of an event about the disc; there is only one, so that naming none means it
// too.
static void CheckIsDisc(const AppleEvent& inEvent) {
    StAEDescriptor specifier;
    specifier.GetOptionalParamDesc(inEvent, keyDirectObject);
    if (specifier.mDesc.descriptorType == DescType(typeNull)) return;
    const Objects objects = ResolveObjects(specifier);
    for (const Object& object : objects.each)
        if (object.objectClass != kDiscClass || object.property != 0)
            LException::Throw(errAENoSuchObject);
}

void HandleAddItems(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    CheckIsDisc(inEvent);
    StAEDescriptor files;
    files.GetParamDesc(inEvent, 'kfil');
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    inRecorder.state.AddItems(PathsFrom(files));
}

void HandleWrite(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply) {
    CheckIsDisc(inEvent);
    WriteOptions options;
    options.eject = OptionalBoolean(inEvent, 'ejWd', true);
    options.verify = OptionalBoolean(inEvent, 'Veri', true);
    options.quitAfterwards = OptionalBoolean(inEvent, 'Quit', false);
    options.mayAskForDisc = OptionalBoolean(inEvent, 'askU', true);
    const bool atOnce = OptionalBoolean(inEvent, 'Asyn', false);
    Accept(inEvent, 'wrAs');  // every disc is a session of its own and is closed
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    const JobEnd end = inRecorder.state.Write(options);
    if (atOnce) return;
    inRecorder.late.Suspend(
        inEvent, ioReply, [&inRecorder, end] { return HasEnded(inRecorder.state, end); },
        [end](AppleEvent*) { ThrowJobError(end); });
}

// Cancelling is no error of the request: the status says so.
static void AnswerBlankDisc(RecorderState& inState, const JobEnd& inEnd) {
    if ((*inEnd)->progress.phase == Phase::Cancelled) return;
    ThrowJobError(inEnd);
    inState.ForgetRequest();
}

void HandleRequestBlankDisc(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply) {
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    RecorderState& state = inRecorder.state;
    const JobEnd end = state.RequestBlankDisc();
    if (state.Engine().WaitUntilQuiet(kSoon) && HasEnded(state, end))
        return AnswerBlankDisc(state, end);
    inRecorder.late.Suspend(
        inEvent, ioReply, [&state, end] { return HasEnded(state, end); },
        [&state, end](AppleEvent*) { AnswerBlankDisc(state, end); });
}

void HandleEject(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    inRecorder.state.Eject();
}

void HandleEndSession(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    inRecorder.state.EndSession();
}

void HandleCancel(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    CheckIsDisc(inEvent);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    inRecorder.state.Cancel();
}

void HandleOpen(Recorder&, const AppleEvent&, AppleEvent&) {}

void HandleQuit(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    Accept(inEvent, keyAESaveOptions);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    inRecorder.state.QuitWhenDone();
}

}  // namespace recorder
