// The reader of dictionaries: any bytes are suites or refused.
#include "cli/Failure.h"
#include "cli/Terminology.h"

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inBytes, size_t inSize) {
    try {
        cli::ReadTerminology({inBytes, inSize});
    } catch (const cli::Failure& failure) {
        if (failure.Code() != errAECorruptData) throw;
    }
    return 0;
}
