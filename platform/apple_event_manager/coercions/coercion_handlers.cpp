// The tables of coercion handlers that programs install.
#include <map>
#include <utility>

#include "apple_event_manager/coercions/coercion.h"

namespace carbon {
namespace {

struct Entry {
    AECoercionHandlerUPP handler;
    SInt32 refCon;
    Boolean takesDesc;
};
using Table = std::map<std::pair<DescType, DescType>, Entry>;

Table& TableFor(Boolean inIsSystem) {
    static Table sTables[2];
    return sTables[inIsSystem ? 1 : 0];
}

OSErr Call(const Entry& inEntry, const AEDesc& inFrom, DescType inType, AEDesc* outDesc) {
    *outDesc = kNullDesc;
    if (inEntry.takesDesc) return inEntry.handler(&inFrom, inType, inEntry.refCon, outDesc);
    const Bytes data = ItemOf(inFrom).content;
    const auto handler = reinterpret_cast<AECoercePtrUPP>(reinterpret_cast<void*>(inEntry.handler));
    return handler(inFrom.descriptorType, data.data(), Size(data.size()), inType, inEntry.refCon,
                   outDesc);
}

// Every entry that may serve the pair, in the order in which they are asked.
std::vector<Entry> Candidates(DescType inFrom, DescType inTo) {
    std::vector<Entry> entries;
    using Pair = std::pair<DescType, DescType>;
    const Pair pairs[] = {
        {inFrom, inTo}, {inFrom, typeWildCard}, {typeWildCard, inTo}, {typeWildCard, typeWildCard}};
    for (Boolean isSystem : {false, true})
        for (const auto& pair : pairs)
            if (const auto found = TableFor(isSystem).find(pair); found != TableFor(isSystem).end())
                entries.push_back(found->second);
    return entries;
}

OSErr AskAll(const std::vector<Entry>& inEntries, const AEDesc& inFrom, DescType inType,
             AEDesc* outDesc) {
    for (const Entry& entry : inEntries) {
        const OSErr result = Call(entry, inFrom, inType, outDesc);
        if (result == noErr) return noErr;
        AEDisposeDesc(outDesc);
        if (result != errAECoercionFail) return result;
    }
    return errAECoercionFail;
}

}  // namespace

OSErr CoerceByHandlers(const Item& inItem, const AEDesc* inWhole, DescType inType,
                       AEDesc* outDesc) {
    if (TableFor(false).empty() && TableFor(true).empty()) return errAECoercionFail;
    const auto entries = Candidates(inItem.type, inType);
    if (entries.empty()) return errAECoercionFail;
    if (inWhole) return AskAll(entries, *inWhole, inType, outDesc);
    // A copy: a handler may well change the container that the item lies in.
    AEDesc copy = {inItem.type, HandleOf(Storage::OfItem(inItem))};
    const OSErr result = AskAll(entries, copy, inType, outDesc);
    AEDisposeDesc(&copy);
    return result;
}

}  // namespace carbon

using namespace carbon;

OSErr AEInstallCoercionHandler(DescType fromType, DescType toType, AECoercionHandlerUPP handler,
                               SInt32 handlerRefcon, Boolean fromTypeIsDesc, Boolean isSysHandler) {
    if (!handler) return paramErr;
    return Guarded([&] {
        TableFor(isSysHandler)[{fromType, toType}] = {handler, handlerRefcon, fromTypeIsDesc};
        return OSErr(noErr);
    });
}

OSErr AERemoveCoercionHandler(DescType fromType, DescType toType, AECoercionHandlerUPP handler,
                              Boolean isSysHandler) {
    Table& table = TableFor(isSysHandler);
    const auto found = table.find({fromType, toType});
    if (found == table.end()) return errAEHandlerNotFound;
    if (handler && handler != found->second.handler) return errAEHandlerNotFound;
    table.erase(found);
    return noErr;
}

OSErr AEGetCoercionHandler(DescType fromType, DescType toType, AECoercionHandlerUPP* handler,
                           SInt32* handlerRefcon, Boolean* fromTypeIsDesc, Boolean isSysHandler) {
    const Table& table = TableFor(isSysHandler);
    const auto found = table.find({fromType, toType});
    if (found == table.end()) return errAEHandlerNotFound;
    if (handler) *handler = found->second.handler;
    if (handlerRefcon) *handlerRefcon = found->second.refCon;
    if (fromTypeIsDesc) *fromTypeIsDesc = found->second.takesDesc;
    return noErr;
}
