// The handler tables and the order in which an event is offered to them.
#include <gtest/gtest.h>

#include "support/TemporaryHome.h"
#include "support/TestEvents.h"

namespace {

TemporaryHome gHome;

std::string gCalls;
OSErr gResult = noErr;

// Notes its refcon as one letter; the handler 'a' answers gResult, every other one noErr.
OSErr Note(const AppleEvent*, AppleEvent*, SInt32 inLetter) {
    gCalls += static_cast<char>(inLetter);
    return inLetter == 'a' ? gResult : OSErr{noErr};
}

OSErr NotePreDispatch(const AppleEvent*, AppleEvent*, SInt32) {
    gCalls += 'P';
    return errAEEventNotHandled;
}

OSErr NoteSystemPreDispatch(const AppleEvent*, AppleEvent*, SInt32) {
    gCalls += 'Q';
    return errAEEventNotHandled;
}

class Handlers : public testing::Test {
  protected:
    void SetUp() override { gCalls.clear(), gResult = noErr; }
    void TearDown() override {
        for (const bool isSystem : {false, true}) {
            for (const AEEventClass theClass :
                 {AEEventClass{kTestClass}, AEEventClass{typeWildCard}})
                for (const AEEventID id : {AEEventID{'evt1'}, AEEventID{typeWildCard}})
                    AERemoveEventHandler(theClass, id, nullptr, isSystem);
            AERemoveSpecialHandler(keyPreDispatch, nullptr, isSystem);
        }
    }

    static void Install(AEEventClass inClass, AEEventID inID, char inLetter,
                        bool inSystem = false) {
        ASSERT_EQ(AEInstallEventHandler(inClass, inID, Note, inLetter, inSystem), noErr);
    }

    // What AESend to oneself returns, and the error number in the reply.
    static std::pair<OSErr, SInt32> Send(AEEventID inID = 'evt1') {
        OwnedDesc event, reply;
        MakeEvent({0, kCurrentProcess}, inID, &event);
        const OSErr err = AESend(&event, &reply, kAEWaitReply, kAENormalPriority, kAEDefaultTimeout,
                                 nullptr, nullptr);
        return {err, LongIn(reply, keyErrorNumber, 0)};
    }
};

TEST_F(Handlers, MostSpecificEntryWinsWhateverTheOrderOfInstalling) {
    Install(typeWildCard, typeWildCard, '4');
    Install(typeWildCard, 'evt1', '3');
    Install(kTestClass, typeWildCard, '2');
    Install(kTestClass, 'evt1', '1');
    for (const AEEventClass theClass : {AEEventClass{kTestClass}, AEEventClass{typeWildCard}})
        for (const AEEventID id : {AEEventID{'evt1'}, AEEventID{typeWildCard}}) {
            Send();
            EXPECT_EQ(AERemoveEventHandler(theClass, id, nullptr, false), noErr);
        }
    EXPECT_EQ(gCalls, "1234");
}

TEST_F(Handlers, EqualEntryIsReplaced) {
    Install(kTestClass, 'evt1', 'x');
    Install(kTestClass, 'evt1', 'y');
    Send();
    EXPECT_EQ(gCalls, "y");
}

TEST_F(Handlers, OrderIsPreDispatchTableSystemPreDispatchSystemTable) {
    AEInstallSpecialHandler(keyPreDispatch, NotePreDispatch, false);
    AEInstallSpecialHandler(keyPreDispatch, NoteSystemPreDispatch, true);
    Install(kTestClass, 'evt1', 'a');
    Install(kTestClass, 'evt1', 's', true);
    gResult = errAEEventNotHandled;
    EXPECT_EQ(Send(), (std::pair<OSErr, SInt32>{noErr, 0}));
    EXPECT_EQ(gCalls, "PaQs");
}

TEST_F(Handlers, AnotherErrorStopsTheSearch) {
    Install(kTestClass, 'evt1', 'a');
    Install(kTestClass, 'evt1', 's', true);
    gResult = errAEEventFailed;
    EXPECT_EQ(Send(), (std::pair<OSErr, SInt32>{noErr, errAEEventFailed}));
    EXPECT_EQ(gCalls, "a");
}

TEST_F(Handlers, LessSpecificEntryOfTheSameTableIsNotTriedAfterARefusal) {
    Install(kTestClass, 'evt1', 'a');
    Install(typeWildCard, typeWildCard, 'w');
    gResult = errAEEventNotHandled;
    EXPECT_EQ(Send(), (std::pair<OSErr, SInt32>{noErr, errAEEventNotHandled}));
    EXPECT_EQ(gCalls, "a");
}

TEST_F(Handlers, NoHandlerIsAnErrorNumberInTheReply) {
    EXPECT_EQ(Send('none'), (std::pair<OSErr, SInt32>{noErr, errAEEventNotHandled}));
}

TEST_F(Handlers, GetMatchesWildCardsOnlyLiterally) {
    Install(kTestClass, typeWildCard, 'w');
    AEEventHandlerUPP handler = nullptr;
    SInt32 refcon = 0;
    EXPECT_EQ(AEGetEventHandler(kTestClass, 'evt1', &handler, &refcon, false),
              errAEHandlerNotFound);
    EXPECT_EQ(AEGetEventHandler(kTestClass, typeWildCard, &handler, &refcon, false), noErr);
    EXPECT_EQ(handler, &Note);
    EXPECT_EQ(refcon, 'w');
    EXPECT_EQ(AEGetEventHandler(kTestClass, typeWildCard, &handler, &refcon, true),
              errAEHandlerNotFound);
}

TEST_F(Handlers, RemoveWantsTheHandlerThatIsInstalledOrNone) {
    Install(kTestClass, 'evt1', 'x');
    EXPECT_EQ(AERemoveEventHandler(kTestClass, 'evt1', NotePreDispatch, false),
              errAEHandlerNotFound);
    EXPECT_EQ(AERemoveEventHandler(kTestClass, 'evt1', Note, true), errAEHandlerNotFound);
    EXPECT_EQ(AERemoveEventHandler(kTestClass, 'evt1', Note, false), noErr);
    EXPECT_EQ(AERemoveEventHandler(kTestClass, 'evt1', nullptr, false), errAEHandlerNotFound);
}

TEST_F(Handlers, InstallRefusesANilHandler) {
    EXPECT_EQ(AEInstallEventHandler(kTestClass, 'evt1', nullptr, 0, false), paramErr);
}

TEST_F(Handlers, SpecialHandlersKnowOnlyTheirKeys) {
    AEEventHandlerUPP handler;
    EXPECT_EQ(AEInstallSpecialHandler('oops', NotePreDispatch, false), errAENotASpecialFunction);
    EXPECT_EQ(AEGetSpecialHandler('oops', &handler, false), errAENotASpecialFunction);
    EXPECT_EQ(AERemoveSpecialHandler('oops', nullptr, false), errAENotASpecialFunction);
    EXPECT_EQ(AEGetSpecialHandler(keyPreDispatch, &handler, false), errAEHandlerNotFound);
    AEInstallSpecialHandler(keyPreDispatch, NotePreDispatch, false);
    EXPECT_EQ(AEGetSpecialHandler(keyPreDispatch, &handler, false), noErr);
    EXPECT_EQ(handler, &NotePreDispatch);
}

OSErr RemoveOneself(const AppleEvent*, AppleEvent*, SInt32) {
    return AERemoveEventHandler(kTestClass, 'evt1', RemoveOneself, false);
}

TEST_F(Handlers, HandlerMayRemoveItselfWhileItRuns) {
    AEInstallEventHandler(kTestClass, 'evt1', RemoveOneself, 0, false);
    EXPECT_EQ(Send().second, noErr);
    EXPECT_EQ(Send().second, errAEEventNotHandled);
}

TEST_F(Handlers, ManagerTellsVersionAndRecorders) {
    SInt32 value = -1;
    EXPECT_EQ(AEManagerInfo(keyAEVersion, &value), noErr);
    EXPECT_EQ(value, 0x01108000);
    EXPECT_EQ(AEManagerInfo(keyAERecorderCount, &value), noErr);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(AEManagerInfo('what', &value), errAENotASpecialFunction);
}

}  // namespace
