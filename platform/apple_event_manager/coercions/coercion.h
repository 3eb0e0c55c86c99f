// Turning a value of one type into another: the order of lookup and the built-in coercions.
#pragma once

#include "apple_event_manager/data/access.h"

namespace carbon {

// Coerces to a type other than the item's own: handlers first, then what is built in. `inWhole` is
// the descriptor that holds the item, when there is one. The result is fresh; null after a failure.
OSErr Coerce(const Item& inItem, const AEDesc* inWhole, DescType inType, AEDesc* outDesc);

// Asks the installed handlers; errAECoercionFail when none took it.
OSErr CoerceByHandlers(const Item& inItem, const AEDesc* inWhole, DescType inType, AEDesc* outDesc);

// The families of built-in coercions. Each answers errAECoercionFail for what is not its own.
OSErr CoerceContainer(const Item& inItem, DescType inType, AEDesc* outDesc);
OSErr CoerceNumber(const Item& inItem, DescType inType, AEDesc* outDesc);
OSErr CoerceText(const Item& inItem, DescType inType, AEDesc* outDesc);
OSErr CoerceCode(const Item& inItem, DescType inType, AEDesc* outDesc);
OSErr CoerceFile(const Item& inItem, DescType inType, AEDesc* outDesc);

// Types that are never the name of a record.
bool IsPlainType(DescType inType);
bool IsNumberType(DescType inType);
bool IsTextType(DescType inType);

}  // namespace carbon
