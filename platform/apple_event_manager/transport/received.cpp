// Owns the attributes that tell a handler where an event came from.
#include "apple_event_manager/transport/received.h"

#include <Carbon/Endian.h>

#include "apple_event_manager/internal.h"

namespace carbon {

ProcessSerialNumber BigEndian(const ProcessSerialNumber& inNumber) {
    return {EndianU32_NtoB(inNumber.highLongOfPSN), EndianU32_NtoB(inNumber.lowLongOfPSN)};
}

bool IsAppleEvent(const AEDesc& inDesc) {
    return EventAttribute32(inDesc, keyEventClassAttr).has_value();
}

OSErr SetSender(AppleEvent* ioEvent, const ProcessSerialNumber& inSender) {
    const ProcessSerialNumber sender = BigEndian(inSender);
    return SetEventAttribute(ioEvent, keyAddressAttr, typeProcessSerialNumber, &sender,
                             sizeof sender);
}

OSErr MarkReceived(AppleEvent* ioEvent, const Reception& inReception) {
    const SInt16 source = EndianS16_NtoB(inReception.source);
    const Boolean isReplyWanted = inReception.isReplyWanted;
    const SInt32 interaction = EndianS32_NtoB(inReception.interaction);
    const SInt32 timeOut = EndianS32_NtoB(inReception.timeOut);
    const auto set = [&](AEKeyword key, DescType type, const auto& value) {
        return SetEventAttribute(ioEvent, key, type, &value, sizeof value);
    };
    OSErr err = SetSender(ioEvent, inReception.sender);
    if (!err) err = set(keyEventSourceAttr, typeSInt16, source);
    if (!err) err = set(keyReplyRequestedAttr, typeBoolean, isReplyWanted);
    if (!err) err = set(keyInteractLevelAttr, typeSInt32, interaction);
    if (!err) err = set(keyTimeoutAttr, typeSInt32, timeOut);
    return err;
}

}  // namespace carbon
