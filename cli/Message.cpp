// Sends events to any program and shows what it answers.
#include "Message.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "Codes.h"
#include "DescJson.h"
#include "Failure.h"
#include "Interrupt.h"
#include "NamedText.h"

namespace cli {
namespace {

std::string SentenceForSending(SInt32 inCode) {
    switch (inCode) {
        case procNotFound:
            return "The program is not running";
        case connectionInvalid:
            return "The program ended before it answered";
        case errAETimeout:
            return "The program did not answer in time";
        case errAEWaitCanceled:
            return "The wait for the answer was interrupted";
        default:
            return "The event could not be sent";
    }
}

std::string SentenceForRefusal(SInt32 inCode) {
    switch (inCode) {
        case errAEEventNotHandled:
            return "The program does not understand this event";
        case errAENoSuchObject:
            return "The program has no such object or property";
        case errAEDescNotFound:
            return "The program misses a parameter";
        case errAECoercionFail:
            return "The program takes values of another type here";
        case errAEParamMissed:
            return "The program does not know one of the parameters";
        case errAENotModifiable:
            return "This cannot be changed";
        case errAECantHandleClass:
            return "The program has no objects of this class";
        case userCanceledErr:
            return "Cancelled";
        default:
            return "The program answered with an error";
    }
}

void ThrowIfNotSent(OSStatus inCode) {
    if (inCode != noErr)
        throw Failure(SentenceForSending(inCode), inCode,
                      inCode == errAEWaitCanceled ? kInterrupted : kFailed);
}

SInt32 TicksFor(const SendOptions& inOptions) {
    constexpr double kTicksPerSecond = 60;
    const double ticks = inOptions.seconds * kTicksPerSecond;
    return inOptions.seconds <= 0 ? SInt32{kNoTimeOut} : static_cast<SInt32>(std::max(ticks, 1.0));
}

}  // namespace

void MakeEvent(const ProcessSerialNumber& inTarget, AEEventClass inClass, AEEventID inID,
               StAEDescriptor& outEvent) {
    const std::array<UInt32, 2> number = {EndianU32_NtoB(inTarget.highLongOfPSN),
                                          EndianU32_NtoB(inTarget.lowLongOfPSN)};
    ThrowIfNotSent(AEBuildAppleEvent(inClass, inID, typeProcessSerialNumber, number.data(),
                                     sizeof number, kAutoGenerateReturnID, kAnyTransactionID,
                                     outEvent, nullptr, nullptr));
}

void Send(const StAEDescriptor& inEvent, const SendOptions& inOptions, StAEDescriptor& outReply) {
    const AESendMode mode = (inOptions.awaitsReply ? kAEWaitReply : kAENoReply) | kAECanInteract;
    ThrowIfNotSent(AESend(inEvent, outReply, mode, kAENormalPriority, TicksFor(inOptions),
                          IdleUntilInterrupt, nullptr));
}

void ThrowIfRefused(const StAEDescriptor& inReply) {
    SInt32 code = noErr;
    if (AEGetParamPtr(inReply, keyErrorNumber, typeSInt32, nullptr, &code, sizeof code, nullptr) !=
        noErr)
        return;
    code = EndianS32_BtoN(code);
    if (code == noErr) return;
    StAEDescriptor text;
    std::string sentence = SentenceForRefusal(code);
    if (AEGetParamDesc(inReply, keyErrorString, typeUTF8Text, text) == noErr)
        sentence += ": " + Shown(BytesOf(text));
    throw Failure(sentence, code, code == userCanceledErr ? kInterrupted : kFailed);
}

void Show(const AEDesc* inDesc, const Vocabulary& inWords, bool inJson) {
    if (inJson) return PrintJson(JsonOf(inDesc, inWords));
    Handle text = nullptr;
    if (const OSStatus status = AEPrintDescToHandle(inDesc, &text); status != noErr)
        throw Failure("The answer is too large to be shown", status);
    const std::string printed(*text, static_cast<size_t>(GetHandleSize(text)));
    DisposeHandle(text);
    std::printf("%s\n", WithNames(printed, inWords, nullptr).c_str());
}

}  // namespace cli
