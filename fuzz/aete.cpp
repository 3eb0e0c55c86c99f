// The reader of dictionaries: any bytes are suites, whose words can be looked up, or refused.
#include "cli/Failure.h"
#include "cli/Terminology.h"
#include "cli/Vocabulary.h"

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inBytes, size_t inSize) {
    try {
        const cli::Vocabulary words("It", cli::ReadTerminology({inBytes, inSize}));
        words.NameOf(cli::WordPlace::kValue, 'pnam');
    } catch (const cli::Failure& failure) {
        if (failure.Code() != errAECorruptData) throw;
    }
    return 0;
}
