// A recording application that burns nothing: it writes down every event it gets and answers by
// script. It lives in a bundle; the script and what it got stand in Contents/Resources.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "support/ScriptedRecorder/EventText.h"
#include "support/ScriptedRecorder/Script.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"

namespace {

struct Value {
    DescType type;
    std::vector<UInt8> bytes;
};

std::filesystem::path sResources;
std::map<std::string, Value> sProperties = {
    {"srvM", {typeBoolean, {0}}},         {"simM", {typeBoolean, {0}}},
    {"sCod", {typeSInt32, {0, 0, 0, 0}}}, {"sTxt", {typeChar, {'I', 'd', 'l', 'e'}}},
    {"DRsi", {typeSInt32, {0, 0, 0, 0}}}, {"mInf", {typeSInt32, {0, 0, 0, 0}}},
};

DescType CodeOf(const std::string& inText) {
    UInt32 code = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        code = code << 8 | static_cast<UInt8>(i < inText.size() ? inText[i] : ' ');
    }
    return code;
}

std::vector<UInt8> BytesOfHex(const std::string& inHex) {
    std::vector<UInt8> bytes;
    for (std::size_t i = 0; i + 1 < inHex.size(); i += 2) {
        bytes.push_back(static_cast<UInt8>(std::stoi(inHex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

void WriteDown(const std::string& inLine) {
    const int file = open((sResources / "events").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    const std::string line = inLine + "\n";
    if (write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) abort();
    close(file);
}

OSErr Put(AppleEvent* ioReply, AEKeyword inKey, const Value& inValue) {
    if (ioReply->descriptorType == typeNull) return noErr;
    return AEPutParamPtr(ioReply, inKey, inValue.type, inValue.bytes.data(),
                         static_cast<Size>(inValue.bytes.size()));
}

FourCharCode CodeIn(const AEDesc& inRecord, AEKeyword inKey, DescType inType) {
    FourCharCode code = 0;
    DescType type;
    Size size;
    AEGetParamPtr(&inRecord, inKey, inType, &type, &code, sizeof code, &size);
    return NativeFromBigEndian(code);
}

// The property that the direct object names, empty when it names none.
std::string PropertyOf(const AppleEvent& inEvent) {
    const StAEDescriptor object(inEvent, keyDirectObject, typeObjectSpecifier);
    if (CodeIn(object.mDesc, keyAEKeyForm, typeEnumerated) != formPropertyID) return {};
    return TextOfCode(CodeIn(object.mDesc, keyAEKeyData, typeType));
}

OSErr AnswerAsIfIdle(const std::string& inEvent, const AppleEvent& inRequest, AppleEvent* ioReply) {
    const std::string property = PropertyOf(inRequest);
    if (inEvent == "core/getd" || inEvent == "core/setd") {
        if (!sProperties.contains(property)) return errAENoSuchObject;
        if (inEvent == "core/getd") return Put(ioReply, keyDirectObject, sProperties[property]);
        const StAEDescriptor data(inRequest, keyAEData, typeWildCard);
        std::vector<UInt8> bytes(static_cast<std::size_t>(AEGetDescDataSize(data)));
        ThrowIfError(AEGetDescData(data, bytes.data(), static_cast<Size>(bytes.size())));
        sProperties[property] = {data.mDesc.descriptorType, bytes};
        return noErr;
    }
    if (inEvent == "aevt/quit") QuitApplicationEventLoop();
    static const std::vector<std::string> known = {"aevt/oapp", "aevt/quit", "core/crel",
                                                   "Fv8k/addD", "Fv8k/wrIt", "Fv8k/RDsc",
                                                   "Fv8k/Ejct", "Fv8k/EndB"};
    const bool isKnown = std::find(known.begin(), known.end(), inEvent) != known.end();
    return isKnown ? OSErr{noErr} : OSErr{errAEEventNotHandled};
}

OSErr Follow(const std::vector<std::string>& inSteps, const AppleEvent& inRequest,
             AppleEvent* ioReply) {
    for (std::size_t i = 0; i < inSteps.size(); ++i) {
        const std::string& step = inSteps[i];
        if (step == "delay") {
            usleep(static_cast<useconds_t>(std::stoi(inSteps.at(++i))) * 1000);
        } else if (step == "die") {
            kill(getpid(), SIGKILL);
        } else if (step == "silent") {
            return AESuspendTheCurrentEvent(&inRequest);
        } else if (step == "error") {
            return static_cast<OSErr>(std::stoi(inSteps.at(++i)));
        } else if (step == "value" || step == "errn") {
            const DescType type = CodeOf(inSteps.at(i + 1));
            const std::string hex = i + 2 < inSteps.size() ? inSteps[i + 2] : "";
            i += 2;
            const OSErr error = Put(ioReply, step == "errn" ? keyErrorNumber : keyDirectObject,
                                    {type, BytesOfHex(hex)});
            if (error != noErr) return error;
        } else if (step != "empty") {
            return paramErr;
        }
    }
    return noErr;
}

OSErr RecordAndAnswer(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32) {
    WriteDown(TextOfEvent(*inEvent));
    const std::string event = TextOfCode(NumberAttribute(*inEvent, keyEventClassAttr, typeType)) +
                              "/" + TextOfCode(NumberAttribute(*inEvent, keyEventIDAttr, typeType));
    const std::string property = PropertyOf(*inEvent);
    const std::string script = sResources / "script";
    ScriptLine line = LineFor(script, property.empty() ? event : event + "/" + property);
    if (!line.found) return AnswerAsIfIdle(event, *inEvent, ioReply);
    return Follow(line.steps, *inEvent, ioReply);
}

}  // namespace

int main() {
    sResources =
        std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() / "Resources";
    AEInstallEventHandler(typeWildCard, typeWildCard, RecordAndAnswer, 0, false);
    RunApplicationEventLoop();
    return 0;
}
