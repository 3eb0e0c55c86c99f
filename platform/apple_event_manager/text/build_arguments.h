// What `@` in the text that values are built from takes from the caller's arguments.
#pragma once

#include <cstdarg>

#include "apple_event_manager/data/access.h"

namespace carbon {

class BuildArguments {
  public:
    explicit BuildArguments(va_list inArguments) { va_copy(mArguments, inArguments); }
    ~BuildArguments() { va_end(mArguments); }
    BuildArguments(const BuildArguments&) = delete;
    BuildArguments& operator=(const BuildArguments&) = delete;

    // Each takes what one `@` asks for. paramErr for a null pointer or a negative size.
    OSErr TakeDesc(AEDesc* outDesc);
    OSErr TakeTyped(DescType inType, AEDesc* outDesc);
    OSErr TakeHandle(DescType inType, AEDesc* outDesc);

  private:
    OSErr TakeText(DescType inType, AEDesc* outDesc);
    OSErr TakeBytes(DescType inType, AEDesc* outDesc);

    va_list mArguments;
};

}  // namespace carbon
