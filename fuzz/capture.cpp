// A file of captured events, and the events in it.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "cli/Capture.h"
#include "cli/Failure.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* inData, size_t inSize) {
    std::istringstream stream(std::string(reinterpret_cast<const char*>(inData), inSize));
    try {
        cli::CaptureReader reader(stream);
        while (const auto record = reader.Next()) {
            AppleEvent event;
            if (record->event.empty()) continue;
            cli::EventFromBytes(record->event, &event);
            if (cli::BytesOfEvent(event) != record->event) __builtin_trap();
            AEDisposeDesc(&event);
        }
    } catch (const cli::Failure&) {
        return 0;  // the reader says what is wrong
    }
    return 0;
}
