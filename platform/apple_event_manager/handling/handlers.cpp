// Owns the handler tables of this process and the order in which they are asked.
#include "apple_event_manager/handling/handlers.h"

#include <Carbon/AppleEvents.h>
#include <Carbon/MacErrors.h>

#include <optional>
#include <unordered_map>

#include "apple_event_manager/handling/event_loop.h"
#include "apple_event_manager/internal.h"

namespace carbon {

namespace {

struct Handler {
    AEEventHandlerUPP function;
    SInt32 refcon;
};

struct HandlerTable {
    std::unordered_map<UInt64, Handler> entries;
    AEEventHandlerUPP preDispatch = nullptr;
};

constexpr UInt64 KeyOf(AEEventClass inClass, AEEventID inID) {
    return UInt64{inClass} << 32 | inID;
}

HandlerTable& Table(bool inIsSystem) {
    static HandlerTable application, system;
    return inIsSystem ? system : application;
}

const Handler* Find(const HandlerTable& inTable, AEEventClass inClass, AEEventID inID) {
    const auto found = inTable.entries.find(KeyOf(inClass, inID));
    return found == inTable.entries.end() ? nullptr : &found->second;
}

// The most specific entry; a less specific one is never asked instead.
const Handler* MostSpecific(const HandlerTable& inTable, AEEventClass inClass, AEEventID inID) {
    if (const Handler* handler = Find(inTable, inClass, inID)) return handler;
    if (const Handler* handler = Find(inTable, inClass, typeWildCard)) return handler;
    if (const Handler* handler = Find(inTable, typeWildCard, inID)) return handler;
    return Find(inTable, typeWildCard, typeWildCard);
}

OSErr OfferToTable(bool inIsSystem, const EventCodes& inCodes, const AppleEvent& inEvent,
                   AppleEvent* ioReply, UInt32 inIgnored) {
    const UInt32 ignorePreDispatch =
        inIsSystem ? UInt32{kAEIgnoreSysPhacHandler} : UInt32{kAEIgnoreAppPhacHandler};
    const UInt32 ignoreTable =
        inIsSystem ? UInt32{kAEIgnoreSysEventHandler} : UInt32{kAEIgnoreAppEventHandler};
    const HandlerTable& table = Table(inIsSystem);
    if (table.preDispatch && !(inIgnored & ignorePreDispatch)) {
        const OSErr result = table.preDispatch(&inEvent, ioReply, 0);
        if (result != errAEEventNotHandled) return result;
    }
    if (inIgnored & ignoreTable) return errAEEventNotHandled;
    const Handler* found = MostSpecific(table, inCodes.eventClass, inCodes.id);
    if (!found) return errAEEventNotHandled;
    const Handler handler = *found;  // The handler may change the table.
    return handler.function(&inEvent, ioReply, handler.refcon);
}

OSErr CheckSpecial(AEKeyword inKey) {
    return inKey == keyPreDispatch ? OSErr{noErr} : OSErr{errAENotASpecialFunction};
}

}  // namespace

OSErr OfferToHandlers(const AppleEvent& inEvent, AppleEvent* ioReply, UInt32 inIgnored) {
    const EventCodes codes = CodesOf(inEvent);
    for (const bool isSystem : {false, true}) {
        const OSErr result = OfferToTable(isSystem, codes, inEvent, ioReply, inIgnored);
        if (result != errAEEventNotHandled) return result;
    }
    if (inIgnored & kAEIngoreBuiltInEventHandler) return errAEEventNotHandled;
    return OfferToBuiltInHandler(codes);
}

EventCodes CodesOf(const AppleEvent& inEvent) {
    return {EventAttribute32(inEvent, keyEventClassAttr).value_or(0),
            EventAttribute32(inEvent, keyEventIDAttr).value_or(0)};
}

}  // namespace carbon

using namespace carbon;

OSErr AEInstallEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID,
                            AEEventHandlerUPP handler, SInt32 handlerRefcon, Boolean isSysHandler) {
    if (!handler) return paramErr;
    Table(isSysHandler).entries[KeyOf(theAEEventClass, theAEEventID)] = {handler, handlerRefcon};
    return noErr;
}

OSErr AERemoveEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID,
                           AEEventHandlerUPP handler, Boolean isSysHandler) {
    HandlerTable& table = Table(isSysHandler);
    const Handler* found = Find(table, theAEEventClass, theAEEventID);
    if (!found || (handler && handler != found->function)) return errAEHandlerNotFound;
    table.entries.erase(KeyOf(theAEEventClass, theAEEventID));
    return noErr;
}

OSErr AEGetEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID,
                        AEEventHandlerUPP* handler, SInt32* handlerRefcon, Boolean isSysHandler) {
    const Handler* found = Find(Table(isSysHandler), theAEEventClass, theAEEventID);
    if (!found) return errAEHandlerNotFound;
    if (handler) *handler = found->function;
    if (handlerRefcon) *handlerRefcon = found->refcon;
    return noErr;
}

OSErr AEInstallSpecialHandler(AEKeyword functionClass, AEEventHandlerUPP handler,
                              Boolean isSysHandler) {
    if (const OSErr err = CheckSpecial(functionClass)) return err;
    if (!handler) return paramErr;
    Table(isSysHandler).preDispatch = handler;
    return noErr;
}

OSErr AERemoveSpecialHandler(AEKeyword functionClass, AEEventHandlerUPP handler,
                             Boolean isSysHandler) {
    if (const OSErr err = CheckSpecial(functionClass)) return err;
    AEEventHandlerUPP& installed = Table(isSysHandler).preDispatch;
    if (!installed || (handler && handler != installed)) return errAEHandlerNotFound;
    installed = nullptr;
    return noErr;
}

OSErr AEGetSpecialHandler(AEKeyword functionClass, AEEventHandlerUPP* handler,
                          Boolean isSysHandler) {
    if (const OSErr err = CheckSpecial(functionClass)) return err;
    const AEEventHandlerUPP installed = Table(isSysHandler).preDispatch;
    if (!installed) return errAEHandlerNotFound;
    if (handler) *handler = installed;
    return noErr;
}

OSErr AEManagerInfo(AEKeyword keyWord, SInt32* result) {
    if (!result) return paramErr;
    if (keyWord == keyAEVersion) return *result = 0x01108000, noErr;
    if (keyWord == keyAERecorderCount) return *result = 0, noErr;
    return errAENotASpecialFunction;
}
