// What an event costs the program that handles it, and how many elements answer one event. The
// serving side is made as any receiving application is: handlers from an 'aedt' resource,
// parameters checked, specifiers resolved with accessors.
//
//   handling [--json] [--seconds S] [--pin same|split|none] [WHAT...]
//
// WHAT: method, two numbers and a text in, a number out, as peer_method of sdbus; each_N, the value
// of every one of N elements in one event; single_N, the same values by an event each. One
// iteration is an event, or 10,000 values, with as many events as that takes; those by the
// processor's time of both sides.
#include <Carbon/Carbon.h>

#include "peers/bench.h"
#include "peers/child.h"
#include "vantor/appleevents/MoreAE.h"
#include "vantor/appleevents/MoreAEObjects.h"
#include "vantor/appleevents/StAEDescriptor.h"
#include "vantor/appleevents/UAppleEventsMgr.h"
#include "vantor/appleevents/UExtractFromAEDesc.h"
#include "vantor/foundation/BigEndian.h"
#include "vantor/foundation/LException.h"
#include "world.h"

using namespace bench;

namespace {

// Short work finds a moment in which nobody else uses the machine, long work never: so all that is
// compared with each other takes about as long.
constexpr SInt32 kItemsInAll = 10000;

enum : DescType { kItemClass = 'Item', kValue = 'valu' };

// --- The serving side ---

SInt32 gCount = 0;

SInt32 NumberIn(const AEDesc& inToken) {
    SInt32 number = 0;
    UExtractFromAEDesc::AEGetDescData(inToken, &number, sizeof number);
    return NativeFromBigEndian(number);
}

void MakeToken(DescType inType, SInt32 inNumber, AEDesc* outToken) {
    const SInt32 number = BigEndianFromNative(inNumber);
    ThrowIfError(AECreateDesc(inType, &number, sizeof number, outToken));
}

void MakeAllItems(AEDesc* outTokens) {
    ThrowIfError(AECreateList(nullptr, 0, false, outTokens));
    for (SInt32 i = 1; i <= gCount; ++i) {
        const SInt32 number = BigEndianFromNative(i);
        ThrowIfError(AEPutPtr(outTokens, 0, kItemClass, &number, sizeof number));
    }
}

OSErr FindItems(DescType, const AEDesc*, DescType, DescType inForm, const AEDesc* inData,
                AEDesc* outToken, SInt32) {
    try {
        if (inForm != DescType(formAbsolutePosition)) return errAEBadKeyForm;
        const SInt32 position = UAppleEventsMgr::GetAbsolutePositionIndex(*inData, gCount);
        if (position == -1) return MakeAllItems(outToken), noErr;
        if (position < 1 || position > gCount) return errAENoSuchObject;
        MakeToken(kItemClass, position, outToken);
        return noErr;
    } catch (const LException& exception) {
        return OSErr(exception.GetErrorCode());
    }
}

// The token of an item's value bears its number.
OSErr FindValue(DescType, const AEDesc* inContainer, DescType, DescType, const AEDesc*,
                AEDesc* outToken, SInt32) {
    const SInt32 number = BigEndianFromNative(NumberIn(*inContainer));
    return AECreateDesc(cProperty, &number, sizeof number, outToken);
}

void Answer(const AEDesc& inToken, StAEDescriptor& outAnswer) {
    outAnswer.Assign(SInt32{NumberIn(inToken) * 3});
}

void AnswerGet(const AppleEvent& inEvent, AppleEvent* ioReply) {
    StAEDescriptor specifier, token, answer;
    specifier.GetParamDesc(inEvent, keyDirectObject);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    ThrowIfError(AEResolve(specifier, kAEResolveNestedLists, token));
    if (token.mDesc.descriptorType != DescType(typeAEList)) {
        Answer(token, answer);
        return ThrowIfError(MoreAEAddResultToReply(answer, ioReply, noErr));
    }
    StAEDescriptor list;
    ThrowIfError(AECreateList(nullptr, 0, false, list));
    SInt32 count = 0;
    ThrowIfError(AECountItems(token, &count));
    for (SInt32 i = 1; i <= count; ++i) {
        StAEDescriptor one;
        ThrowIfError(AEGetNthDesc(token, i, typeWildCard, nullptr, one));
        Answer(one, answer);
        ThrowIfError(AEPutDesc(list, 0, answer));
    }
    ThrowIfError(MoreAEAddResultToReply(list, ioReply, noErr));
}

void AnswerAdd(const AppleEvent& inEvent, AppleEvent* ioReply) {
    StAEDescriptor first, second, text, answer;
    first.GetParamDesc(inEvent, keyDirectObject, typeSInt32);
    second.GetParamDesc(inEvent, keyAEData, typeSInt32);
    text.GetParamDesc(inEvent, keyAEText, typeChar);
    UAppleEventsMgr::CheckForMissedParams(inEvent);
    SInt32 numbers[2];
    Str255 letters;
    UExtractFromAEDesc::TheSInt32(first, numbers[0]);
    UExtractFromAEDesc::TheSInt32(second, numbers[1]);
    UExtractFromAEDesc::ThePString(text, letters, sizeof letters);
    answer.Assign(SInt32{numbers[0] + numbers[1] + letters[1]});
    ThrowIfError(MoreAEAddResultToReply(answer, ioReply, noErr));
}

OSErr Handle(const AppleEvent* inEvent, AppleEvent* ioReply, SInt32 inName) {
    try {
        inName == SInt32('getd') ? AnswerGet(*inEvent, ioReply) : AnswerAdd(*inEvent, ioReply);
        return noErr;
    } catch (const LException& exception) {
        return OSErr(exception.GetErrorCode());
    }
}

void OpenResources() {
    const std::string path = std::filesystem::read_symlink("/proc/self/exe").string() + ".rsrc";
    FSRef ref;
    ThrowIfError(FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &ref, nullptr));
    ResFileRefNum file;
    ThrowIfError(FSOpenResourceFile(&ref, 0, nullptr, fsRdPerm, &file));
}

// Writes a byte to the client when it is ready.
void Serve(SInt32 inCount, int inReady) {
    gCount = inCount;
    OpenResources();
    UAppleEventsMgr::InstallAEHandlers(Handle);
    ThrowIfError(AEInstallObjectAccessor(kItemClass, typeNull, FindItems, 0, false));
    ThrowIfError(AEInstallObjectAccessor(cProperty, kItemClass, FindValue, 0, false));
    ProcessSerialNumber self;
    ThrowIfError(GetCurrentProcess(&self));
    if (write(inReady, "r", 1) != 1) die("write");
    RunApplicationEventLoop();
}

// --- The client ---

class Server {
  public:
    Server(SInt32 inCount, Pin inPin) : mChild(Start(inCount, inPin)) {
        char ready;
        close(mEnds[1]);
        if (read(mEnds[0], &ready, 1) != 1) die("the serving process");
        close(mEnds[0]);
        mPid = BigEndianFromNative(SInt32{mChild.pid()});
    }
    void MakeEvent(AEEventClass inClass, AEEventID inID, StAEDescriptor& outEvent) {
        StAEDescriptor target(typeKernelProcessID, &mPid, sizeof mPid);
        ThrowIfError(AECreateAppleEvent(inClass, inID, target, kAutoGenerateReturnID,
                                        kAnyTransactionID, outEvent));
    }
    pid_t Pid() const { return mChild.pid(); }

  private:
    Child Start(SInt32 inCount, Pin inPin) {
        if (pipe(mEnds) != 0) die("pipe");
        return Child::self({"--serve", std::to_string(inCount), std::to_string(mEnds[1])}, inPin);
    }

    int mEnds[2];
    Child mChild;
    SInt32 mPid;
};

StAEDescriptor AnswerTo(const StAEDescriptor& inEvent) {
    StAEDescriptor reply, answer;
    ThrowIfError(
        AESend(inEvent, reply, kAEWaitReply, kAENormalPriority, kNoTimeOut, nullptr, nullptr));
    ThrowIfError(MoreAEGetHandlerError(reply));
    answer.GetParamDesc(reply, keyDirectObject);
    return answer;
}

void CallMethod(Server& ioServer) {
    StAEDescriptor event;
    ioServer.MakeEvent('Bnch', 'add ', event);
    const StAEDescriptor first(SInt32{40}), second(SInt32{-63});
    ThrowIfError(AEPutParamDesc(event, keyDirectObject, first));
    ThrowIfError(AEPutParamDesc(event, keyAEData, second));
    ThrowIfError(AEPutParamPtr(event, keyAEText, typeChar, "A track", 7));
    if (NumberIn(AnswerTo(event).mDesc) != 42) LException::Throw(errAECorruptData);
}

// Of the value of an item, or of every one when the position is 0.
StAEDescriptor ValueOf(Server& ioServer, SInt32 inPosition) {
    StAEDescriptor application, items, value, event;
    const DescType all = BigEndianFromNative(DescType(kAEAll));
    StAEDescriptor key(typeAbsoluteOrdinal, &all, sizeof all);
    if (inPosition != 0) key.Assign(inPosition);
    ThrowIfError(
        CreateObjSpecifier(kItemClass, application, formAbsolutePosition, key, false, items));
    ThrowIfError(MoreAEOCreatePropertyObject(kValue, items, value));
    ioServer.MakeEvent(kAECoreSuite, kAEGetData, event);
    ThrowIfError(AEPutParamDesc(event, keyDirectObject, value));
    return AnswerTo(event);
}

void GetEach(Server& ioServer, SInt32 inCount) {
    const StAEDescriptor values = ValueOf(ioServer, 0);
    SInt64 sum = 0;
    for (SInt32 i = 1; i <= inCount; ++i) {
        SInt32 value = 0;
        ThrowIfError(
            AEGetNthPtr(values, i, typeSInt32, nullptr, nullptr, &value, sizeof value, nullptr));
        sum += NativeFromBigEndian(value);
    }
    if (sum != SInt64{3} * inCount * (inCount + 1) / 2) LException::Throw(errAECorruptData);
}

void GetSingly(Server& ioServer, SInt32 inCount) {
    for (SInt32 i = 1; i <= inCount; ++i)
        if (NumberIn(ValueOf(ioServer, i).mDesc) != 3 * i) LException::Throw(errAECorruptData);
}

void Measure(const std::string& inWhat, const std::string& inSuffix, double inSeconds, Pin inPin) {
    const std::string name = "ours." + inWhat + inSuffix;
    const SInt32 count = std::atoi(inWhat.c_str() + inWhat.rfind('_') + 1);
    Server server(count, inPin);
    if (inWhat == "method")
        return time_handling(name, inSeconds, server.Pid(), [&] { CallMethod(server); });
    const bool isEach = inWhat.rfind("each_", 0) == 0;
    const SInt32 times = std::max(kItemsInAll / count, SInt32{1});
    const double total = least_processor_time(inSeconds, 3, server.Pid(), [&] {
        for (SInt32 i = 0; i < times; ++i)
            isEach ? GetEach(server, count) : GetSingly(server, count);
    });
    emit(name + ".processor", total / 1e6, "ms");
    emit(name + ".item", total / 1e3 / (SInt64{count} * times), "us");
}

}  // namespace

int main(int inCount, char** inWords) {
    auto words = arguments(inCount, inWords);
    const double seconds = std::atof(take_option(words, "--seconds", "1").c_str());
    const std::string pinName = take_option(words, "--pin", "none");
    const Pin pin = pin_from(pinName);
    try {
        if (words.size() == 3 && words[0] == "--serve")
            return Serve(std::stoi(words[1]), std::stoi(words[2])), 0;
        if (words.empty()) words = {"method", "each_1000", "each_10000", "single_10000"};
        World world;
        pin_client(pin);
        for (const auto& what : words)
            Measure(what, pin == Pin::none ? "" : "." + pinName, seconds, pin);
        return 0;
    } catch (const LException& exception) {
        std::fprintf(stderr, "handling: %s (%d)\n", exception.what(),
                     int(exception.GetErrorCode()));
        return 1;
    }
}
