// The developer alert: its texts, its buttons, and the switches that silence it.
#include "vantor/foundation/UDebugging.h"

#include <algorithm>
#include <cstring>

#include "vantor/foundation/LException.h"

SInt32 UDebugging::gDebugThrow = debugAction_Nothing;
SInt32 UDebugging::gDebugSignal = debugAction_Nothing;

namespace {

enum : SInt16 { kThrowAlert = 251, kSignalAlert = 252 };
enum : SInt16 { kQuitButton = 4, kDebuggerButton = 5, kSilenceButton = 6 };

// A C string where a Pascal string is needed, for one call.
class PascalText {
  public:
    explicit PascalText(const char* inText) { UDebugging::LoadPStrFromCStr(mText, inText); }
    operator ConstStringPtr() const { return mText; }

  private:
    Str255 mText;
};

class NumberText {
  public:
    explicit NumberText(SInt32 inNumber) { NumToString(inNumber, mText); }
    operator ConstStringPtr() const { return mText; }

  private:
    Str255 mText;
};

void ActOnButton(SInt16 inItem, SInt32& ioSwitch) {
    if (inItem == kDebuggerButton) Debugger();
    if (inItem == kQuitButton) ExitToShell();
    if (inItem == kSilenceButton) ioSwitch = debugAction_Nothing;
}

void ShowAlert(SInt16 inAlert, SInt32& ioSwitch, ConstStringPtr inMessage, const char* inFile,
               ConstStringPtr inDetail, SInt32 inLine) {
    ParamText(inMessage, PascalText(inFile), inDetail, NumberText(inLine));
    ActOnButton(StopAlert(inAlert, nullptr), ioSwitch);
}

}  // namespace

void UDebugging::DebugThrow(SInt32 inCode, const char* inFile, ConstStringPtr inDetail,
                            SInt32 inLine) {
    const NumberText code(inCode);
    if (gDebugThrow == debugAction_Alert) AlertThrowAt(code, inFile, inDetail, inLine);
    if (gDebugThrow == debugAction_Debugger) DebugStr(code);
    LException::Throw(inCode);
}

void UDebugging::DebugThrow(SInt32 inCode, const char* inFile, const char* inDetail,
                            SInt32 inLine) {
    DebugThrow(inCode, inFile, PascalText(inDetail), inLine);
}

void UDebugging::AlertThrowAt(ConstStringPtr inMessage, const char* inFile, ConstStringPtr inDetail,
                              SInt32 inLine) {
    ShowAlert(kThrowAlert, gDebugThrow, inMessage, inFile, inDetail, inLine);
}

void UDebugging::AlertThrowAt(ConstStringPtr inMessage, const char* inFile, const char* inDetail,
                              SInt32 inLine) {
    AlertThrowAt(inMessage, inFile, PascalText(inDetail), inLine);
}

void UDebugging::AlertSignalAt(ConstStringPtr inMessage, const char* inFile,
                               ConstStringPtr inDetail, SInt32 inLine) {
    ShowAlert(kSignalAlert, gDebugSignal, inMessage, inFile, inDetail, inLine);
}

void UDebugging::AlertSignalAt(ConstStringPtr inMessage, const char* inFile, const char* inDetail,
                               SInt32 inLine) {
    AlertSignalAt(inMessage, inFile, PascalText(inDetail), inLine);
}

void UDebugging::AlertSignalAt(const char* inMessage, const char* inFile, ConstStringPtr inDetail,
                               SInt32 inLine) {
    AlertSignalAt(PascalText(inMessage), inFile, inDetail, inLine);
}

void UDebugging::AlertSignalAt(const char* inMessage, const char* inFile, const char* inDetail,
                               SInt32 inLine) {
    AlertSignalAt(PascalText(inMessage), inFile, PascalText(inDetail), inLine);
}

void UDebugging::AlertSignalOSStatusAt(SInt32 inStatus, const char* inFile, ConstStringPtr inDetail,
                                       SInt32 inLine) {
    Str255 message;
    LoadPStrFromCStr(message, "Status Code = ");
    const NumberText number(inStatus);
    const ConstStringPtr digits = number;
    std::memcpy(&message[message[0] + 1], &digits[1], digits[0]);
    message[0] = static_cast<unsigned char>(message[0] + digits[0]);
    AlertSignalAt(message, inFile, inDetail, inLine);
}

void UDebugging::AlertSignalOSStatusAt(SInt32 inStatus, const char* inFile, const char* inDetail,
                                       SInt32 inLine) {
    AlertSignalOSStatusAt(inStatus, inFile, PascalText(inDetail), inLine);
}

unsigned char* UDebugging::LoadPStrFromCStr(unsigned char* outString, const char* inString) {
    const std::size_t length = strnlen(inString, 255);
    outString[0] = static_cast<unsigned char>(length);
    std::memcpy(&outString[1], inString, length);
    return outString;
}

void UDebugging::DebugNumber(SInt32 inNumber) {
    DebugStr(NumberText(inNumber));
}
