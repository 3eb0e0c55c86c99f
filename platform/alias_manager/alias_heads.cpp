// Owns the calls on the head of an alias record.
#include <Carbon/Aliases.h>
#include <Carbon/MacMemory.h>

#include "alias_manager/alias_record.h"
#include "apple_event_manager/big_endian.h"

namespace {

constexpr Size kHeadSize = 6;

// Nothing for a handle that is too small for the head: it may have come from anywhere.
AliasPtr RecordOf(AliasHandle inAlias) {
    const bool isWhole = inAlias && *inAlias && GetHandleSize(Handle(inAlias)) >= kHeadSize;
    return isWhole ? *inAlias : nullptr;
}

}  // namespace

Size GetAliasSizeFromPtr(const AliasRecord* alias) {
    return alias ? carbon::ReadBigEndian<UInt16>(alias->hidden + 4) : 0;
}

Size GetAliasSize(AliasHandle alias) {
    return GetAliasSizeFromPtr(RecordOf(alias));
}

OSType GetAliasUserTypeFromPtr(const AliasRecord* alias) {
    return alias ? carbon::ReadBigEndian<UInt32>(alias->hidden) : 0;
}

OSType GetAliasUserType(AliasHandle alias) {
    return GetAliasUserTypeFromPtr(RecordOf(alias));
}

void SetAliasUserTypeWithPtr(AliasPtr alias, OSType userType) {
    if (alias) carbon::WriteBigEndian(alias->hidden, userType);
}

void SetAliasUserType(AliasHandle alias, OSType userType) {
    SetAliasUserTypeWithPtr(RecordOf(alias), userType);
}
