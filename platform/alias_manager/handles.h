// Alias records in handles, and the steps that several calls share.
#pragma once

#include "alias_manager/alias_record.h"
#include "alias_manager/resolving.h"

namespace carbon {

// Nothing when the handle holds no alias record.
std::optional<AliasContents> ContentsOf(AliasHandle inAlias);

// memFullErr; the handle is null then.
OSErr MakeHandle(const AliasContents& inContents, AliasHandle* outAlias);

// Puts another record in the place of the handle's; what was appended to it stays. Nothing changes
// after an error.
OSErr ReplaceRecord(const AliasContents& inContents, AliasHandle ioAlias, Boolean* outWasChanged);

// The object of a file spec that may be null.
OSErr FindFrom(Objects& ioObjects, const FSSpec* inFrom, Object* outObject);

// Finds an alias's object and brings the record up to date. After fnfErr `outTarget` is where the
// object ought to be.
OSErr ResolveHandle(const FSSpec* inFrom, UInt32 inFlags, AliasHandle ioAlias, FSSpec* outTarget,
                    Boolean* outWasChanged);

// The same for references, which may be null where a file spec may.
OSErr SpecOfRef(const FSRef* inRef, FSSpec* outSpec);

}  // namespace carbon
