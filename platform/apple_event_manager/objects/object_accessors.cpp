// The tables of object accessors, and calling the one that fits.
#include <array>
#include <map>

#include "apple_event_manager/objects/object_model.h"

namespace carbon {
namespace {

struct Entry {
    OSLAccessorUPP accessor;
    SInt32 refCon;
};
using Table = std::map<std::pair<DescType, DescType>, Entry>;

Table& TableFor(Boolean inIsSystem) {
    static Table sTables[2];
    return sTables[inIsSystem ? 1 : 0];
}

// At most eight: copies, since an accessor may change the tables.
struct CandidateList {
    std::array<Entry, 8> entries;
    size_t count = 0;

    const Entry* begin() const { return entries.data(); }
    const Entry* end() const { return entries.data() + count; }
};

CandidateList Candidates(DescType inClass, DescType inContainerType) {
    using Pair = std::pair<DescType, DescType>;
    CandidateList list;
    const Pair pairs[] = {{inClass, inContainerType},
                          {inClass, typeWildCard},
                          {typeWildCard, inContainerType},
                          {typeWildCard, typeWildCard}};
    for (Boolean isSystem : {false, true}) {
        const Table& table = TableFor(isSystem);
        if (table.empty()) continue;
        for (const auto& pair : pairs)
            if (const auto found = table.find(pair); found != table.end())
                list.entries[list.count++] = found->second;
    }
    return list;
}

// errAEEventNotHandled is an accessor's way to leave the matter to the next one.
OSErr CallAccessor(DescType inClass, const AEDesc* inContainer, DescType inContainerClass,
                   DescType inForm, const AEDesc* inKeyData, AEDesc* outToken) {
    OSErr result = errAEAccessorNotFound;
    for (const Entry& entry : Candidates(inClass, inContainer->descriptorType)) {
        result = entry.accessor(inClass, inContainer, inContainerClass, inForm, inKeyData, outToken,
                                entry.refCon);
        if (result != errAEEventNotHandled) break;
    }
    return result;
}

}  // namespace
}  // namespace carbon

using namespace carbon;

OSErr AEInstallObjectAccessor(DescType desiredClass, DescType containerType,
                              OSLAccessorUPP theAccessor, SInt32 accessorRefcon,
                              Boolean isSysHandler) {
    if (!theAccessor) return paramErr;
    return Guarded([&] {
        TableFor(isSysHandler)[{desiredClass, containerType}] = {theAccessor, accessorRefcon};
        return OSErr(noErr);
    });
}

OSErr AERemoveObjectAccessor(DescType desiredClass, DescType containerType,
                             OSLAccessorUPP theAccessor, Boolean isSysHandler) {
    Table& table = TableFor(isSysHandler);
    const auto found = table.find({desiredClass, containerType});
    if (found == table.end()) return errAEAccessorNotFound;
    if (theAccessor && theAccessor != found->second.accessor) return errAEAccessorNotFound;
    table.erase(found);
    return noErr;
}

OSErr AEGetObjectAccessor(DescType desiredClass, DescType containerType, OSLAccessorUPP* accessor,
                          SInt32* accessorRefcon, Boolean isSysHandler) {
    const Table& table = TableFor(isSysHandler);
    const auto found = table.find({desiredClass, containerType});
    if (found == table.end()) return errAEAccessorNotFound;
    if (accessor) *accessor = found->second.accessor;
    if (accessorRefcon) *accessorRefcon = found->second.refCon;
    return noErr;
}

OSErr AECallObjectAccessor(DescType desiredClass, const AEDesc* containerToken,
                           DescType containerClass, DescType keyForm, const AEDesc* keyData,
                           AEDesc* token) {
    if (!containerToken || !keyData) return Making(token, [] { return OSErr(paramErr); });
    return Making(token, [&] {
        return CallAccessor(desiredClass, containerToken, containerClass, keyForm, keyData, token);
    });
}
