// Handlers: which function of this process answers which Apple event.
//
// Each process has two tables, the application's own and the system's (isSysHandler true), both of
// this process alone. An event is offered to the application's pre-dispatch handler, the
// application table, the system's pre-dispatch handler and the system table, in this order, until
// one does not answer errAEEventNotHandled. Of each table only the most specific entry is asked:
// class and ID, then the class with any ID, any class with the ID, both wild.
#ifndef CARBON_APPLEEVENTS_H
#define CARBON_APPLEEVENTS_H

#include <Carbon/AEDataModel.h>
#include <Carbon/AEInteraction.h>

// Parameters of every event and reply.
enum {
    keyDirectObject = '----',
    keyErrorNumber = 'errn',  // 'long'
    keyErrorString = 'errs',  // 'TEXT'
    keyProcessSerialNumber = 'psn '
};

// Keys of AEInstallSpecialHandler and AEManagerInfo.
enum { keyPreDispatch = 'phac', keyAERecorderCount = 'recr', keyAEVersion = 'vers' };

// The required suite.
enum {
    kCoreEventClass = 'aevt',
    kAEOpenApplication = 'oapp',
    kAEOpenDocuments = 'odoc',
    kAEPrintDocuments = 'pdoc',
    kAEOpenContents = 'ocon',
    kAEQuitApplication = 'quit',
    kAEAnswer = 'ansr',          // a queued reply
    kAEApplicationDied = 'obit'  // 'errn' and 'psn ' of a process that this one launched
};

// Where an event came from, attribute keyEventSourceAttr.
typedef SInt8 AEEventSource;
enum {
    kAEUnknownSource = 0,
    kAEDirectCall = 1,
    kAESameProcess = 2,
    kAELocalProcess = 3,
    kAERemoteProcess = 4
};

PLATFORM_DECLARATIONS_BEGIN

// Makes `handler` answer events of this class and ID (each may be typeWildCard), replacing an equal
// entry. `handlerRefcon` is passed to it. The handler runs on the thread that runs the event loop;
// it fills `reply` (the null descriptor when none is wanted) and disposes nothing it is given.
// paramErr for a nil handler.
OSErr AEInstallEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID,
                            AEEventHandlerUPP handler, SInt32 handlerRefcon, Boolean isSysHandler);

// Takes the entry with exactly these codes away; a nil `handler` means whichever is there.
// errAEHandlerNotFound when there is none, or another handler.
OSErr AERemoveEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID,
                           AEEventHandlerUPP handler, Boolean isSysHandler);

// The entry with exactly these codes; a wild card finds only a wild entry. Either pointer may be
// null. errAEHandlerNotFound when there is none.
OSErr AEGetEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID,
                        AEEventHandlerUPP* handler, SInt32* handlerRefcon, Boolean isSysHandler);

// The pre-dispatch handler (keyPreDispatch), asked before the table of the same kind.
// errAENotASpecialFunction for any other key: the object callbacks are set with
// AESetObjectCallbacks. paramErr for a nil handler.
OSErr AEInstallSpecialHandler(AEKeyword functionClass, AEEventHandlerUPP handler,
                              Boolean isSysHandler);

// errAEHandlerNotFound when there is none, or another handler; errAENotASpecialFunction.
OSErr AERemoveSpecialHandler(AEKeyword functionClass, AEEventHandlerUPP handler,
                             Boolean isSysHandler);

// errAEHandlerNotFound when there is none; errAENotASpecialFunction.
OSErr AEGetSpecialHandler(AEKeyword functionClass, AEEventHandlerUPP* handler,
                          Boolean isSysHandler);

// keyAEVersion: the version as a number, 0x01108000. keyAERecorderCount: how many programs record,
// always 0. errAENotASpecialFunction for any other key; *result is then untouched.
OSErr AEManagerInfo(AEKeyword keyWord, SInt32* result);

PLATFORM_DECLARATIONS_END

#endif
