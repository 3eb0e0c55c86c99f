// Flattened bytes from a stranger: taken whole or refused; what is taken can be read, changed and
// flattened again.
#include <Carbon/Carbon.h>

#include <cstdlib>
#include <vector>

#include "apple_event_manager/internal.h"

namespace {

void Require(bool inHolds) {
    if (!inHolds) std::abort();
}

void ReadItems(const AEDesc& inContainer, int inDepth) {
    SInt32 count = 0;
    if (AECountItems(&inContainer, &count) != noErr) return;
    Require(inDepth <= 32);
    for (SInt32 i = 1; i <= count; ++i) {
        AEKeyword keyword = 0;
        AEDesc item = {typeNull, nullptr};
        Require(AEGetNthDesc(&inContainer, i, typeWildCard, &keyword, &item) == noErr);
        if (AECheckIsRecord(&inContainer))
            Require(AESizeOfParam(&inContainer, keyword, nullptr, nullptr) == noErr);
        ReadItems(item, inDepth + 1);
        AEDisposeDesc(&item);
    }
}

void ReadAttributes(const AppleEvent& inEvent) {
    for (AEKeyword key :
         {keyEventClassAttr, keyEventIDAttr, keyAddressAttr, keyReturnIDAttr, keyTransactionIDAttr,
          keyTimeoutAttr, keyOptionalKeywordAttr, keyMissedKeywordAttr}) {
        AEDesc value = {typeNull, nullptr};
        AEGetAttributeDesc(&inEvent, key, typeWildCard, &value);
        AEDisposeDesc(&value);
    }
    AppleEvent reply = {typeNull, nullptr};
    carbon::MakeReply(inEvent, &reply);
    AEDisposeDesc(&reply);
}

// Changes it in every way there is; the form must stay whole.
void Change(AEDesc& ioDesc) {
    AEPutPtr(&ioDesc, 0, typeChar, "appended", 8);
    AEPutPtr(&ioDesc, 1, typeChar, "put", 3);
    AEPutParamPtr(&ioDesc, 'keyA', typeChar, "added", 5);
    AEPutAttributePtr(&ioDesc, keyTimeoutAttr, typeChar, "600", 3);
    AEDeleteItem(&ioDesc, 1);
    const auto bytes = carbon::EventBytes(ioDesc);
    AEDesc again = {typeNull, nullptr};
    Require(carbon::DescFromBytes(carbon::Buffer(bytes), &again) == noErr);
    AEDisposeDesc(&again);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inData, size_t inSize) {
    AEDesc desc = {typeNull, nullptr};
    if (carbon::DescFromBytes(carbon::Buffer({inData, inData + inSize}), &desc) != noErr) {
        Require(desc.dataHandle == nullptr);
        return 0;
    }
    const auto bytes = carbon::EventBytes(desc);
    Require(std::equal(bytes.begin(), bytes.end(), inData, inData + inSize));
    ReadItems(desc, 1);
    ReadAttributes(desc);
    Change(desc);
    AEDisposeDesc(&desc);
    return 0;
}
