// Owns what each event does.
#include "handlers/commands.h"

#include "burn/BurnFailure.h"
#include "handlers/handlers.h"
#include "handlers/parameters.h"
#include "handlers/properties.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

// What ends so soon is answered at once; a client that waits longer is answered later, and others
// meanwhile.
constexpr int kSoon = 200;  // milliseconds

void PutAnswer(const StAEDescriptor& inValue, AppleEvent& ioReply) {
    if (ioReply.descriptorType == DescType(typeNull)) return;  // nobody asked for an answer
    ThrowIfError(AEPutParamDesc(&ioReply, keyDirectObject, inValue));
}

void AnswerProperty(RecorderState& inState, const Object& inObject, DescType inType,
                    AppleEvent& ioReply) {
    StAEDescriptor value;
    GetProperty(inState, inObject, value);
    ConvertTo(inType, value);
    PutAnswer(value, ioReply);
}

// Old hosts name no type and know no UTF-8.
DescType WantedType(const AppleEvent& inEvent, const StAEDescriptor& inValue) {
    StAEDescriptor wanted;
    wanted.GetOptionalParamDesc(inEvent, keyAERequestedType, typeType);
    if (wanted.mDesc.descriptorType != DescType(typeNull)) return CodeFrom(wanted);
    return inValue.mDesc.descriptorType == DescType(typeUTF8Text) ? DescType(typeChar)
                                                                  : DescType(typeWildCard);
}

void AnswerGet(Recorder& inRecorder, const AppleEvent& inEvent, const Object& inObject,
               AppleEvent& ioReply) {
    StAEDescriptor value;
    GetProperty(inRecorder.state, inObject, value);
    const DescType type = WantedType(inEvent, value);
    RefuseUnreadParameters(inEvent);
    ConvertTo(type, value);
    PutAnswer(value, ioReply);
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
    const Object object = ResolveObject(specifier);
    if (object.property == 0) {
        Accept(inEvent, keyAERequestedType);
        RefuseUnreadParameters(inEvent);
        return PutAnswer(specifier, ioReply);
    }
    if (!MustWaitFor(inRecorder.state, object) || inRecorder.state.Engine().WaitUntilQuiet(kSoon))
        return AnswerGet(inRecorder, inEvent, object, ioReply);
    inRecorder.late.Suspend(
        inEvent, ioReply, [&inRecorder, object] { return !MustWaitFor(inRecorder.state, object); },
        [&inRecorder, object](AppleEvent* reply) {
            AnswerProperty(inRecorder.state, object, typeWildCard, *reply);
        });
}

void HandleSetData(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    StAEDescriptor specifier, value;
    specifier.GetParamDesc(inEvent, keyDirectObject);
    value.GetParamDesc(inEvent, keyAEData);
    RefuseUnreadParameters(inEvent);
    const Object object = ResolveObject(specifier);
    if (object.property == 0) LException::Throw(errAENotModifiable);
    SetProperty(inRecorder.state, object, value);
}

void HandleCountElements(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent& ioReply) {
    StAEDescriptor container, wanted, count;
    container.GetOptionalParamDesc(inEvent, keyDirectObject);
    wanted.GetParamDesc(inEvent, keyAEObjectClass, typeType);
    RefuseUnreadParameters(inEvent);
    const OSType wantedClass = CodeFrom(wanted);
    const Object object = ResolveObject(container);
    SInt32 number = 0;
    if (object.objectClass == DescType(cApplication) && object.property == 0) {
        if (wantedClass == OSType(kDiscClass)) number = 1;
        if (wantedClass == OSType(kDriveClass))
            number = SInt32(inRecorder.state.Engine().DriveIdentifiers().size());
    }
    MakeNumber(number, count);
    PutAnswer(count, ioReply);
}

void HandleMakeDisc(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    StAEDescriptor kind;
    kind.GetParamDesc(inEvent, keyAEObjectClass, typeType);
    Accept(inEvent, keyAEInsertHere);
    Accept(inEvent, keyAEPropData);
    RefuseUnreadParameters(inEvent);
    inRecorder.state.MakeDisc(CodeFrom(kind));
}

// The direct object of an event about the disc; there is only one, so that naming none means it
// too.
static void CheckIsDisc(const AppleEvent& inEvent) {
    StAEDescriptor specifier;
    specifier.GetOptionalParamDesc(inEvent, keyDirectObject);
    if (specifier.mDesc.descriptorType == DescType(typeNull)) return;
    const Object object = ResolveObject(specifier);
    if (object.objectClass != DescType(kDiscClass) || object.property != 0)
        LException::Throw(errAENoSuchObject);
}

void HandleAddItems(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    CheckIsDisc(inEvent);
    StAEDescriptor files;
    files.GetParamDesc(inEvent, 'kfil');
    RefuseUnreadParameters(inEvent);
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
    RefuseUnreadParameters(inEvent);
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
    RefuseUnreadParameters(inEvent);
    RecorderState& state = inRecorder.state;
    const JobEnd end = state.RequestBlankDisc();
    if (state.Engine().WaitUntilQuiet(kSoon) && HasEnded(state, end))
        return AnswerBlankDisc(state, end);
    inRecorder.late.Suspend(
        inEvent, ioReply, [&state, end] { return HasEnded(state, end); },
        [&state, end](AppleEvent*) { AnswerBlankDisc(state, end); });
}

void HandleEject(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    RefuseUnreadParameters(inEvent);
    inRecorder.state.Eject();
}

void HandleEndSession(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    RefuseUnreadParameters(inEvent);
    inRecorder.state.EndSession();
}

void HandleCancel(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    CheckIsDisc(inEvent);
    RefuseUnreadParameters(inEvent);
    inRecorder.state.Cancel();
}

void HandleOpen(Recorder&, const AppleEvent&, AppleEvent&) {}

void HandleQuit(Recorder& inRecorder, const AppleEvent& inEvent, AppleEvent&) {
    Accept(inEvent, keyAESaveOptions);
    RefuseUnreadParameters(inEvent);
    inRecorder.state.QuitWhenDone();
}

}  // namespace recorder
