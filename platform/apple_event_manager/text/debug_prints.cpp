// Prints events for those who look for what programs say to each other.
#include "apple_event_manager/text/debug_prints.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>

#include "apple_event_manager/internal.h"
#include "apple_event_manager/text/print.h"

namespace carbon {
namespace {

bool IsOn(const char* inVariable) {
    const char* value = std::getenv(inVariable);
    return value && *value != '\0' && std::string(value) != "0";
}

// One write for each line, so that the lines of several programs do not mix.
void WriteLine(const std::string& inText) {
    const int error = errno;
    const std::string line = std::string(program_invocation_short_name) + " (" +
                             std::to_string(getpid()) + "): " + inText + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
    errno = error;
}

}  // namespace

bool PrintsSends() {
    static const bool sPrints = IsOn("AEDebugSends");
    return sPrints;
}

bool PrintsReceives() {
    static const bool sPrints = IsOn("AEDebugReceives");
    return sPrints;
}

void DebugPrint(const char* inWhat, const AppleEvent& inEvent) {
    try {
        WriteLine(std::string(inWhat) + ": " + PrintedDesc(inEvent));
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "%s: an event that is too large to print\n", inWhat);
    }
}

void DebugPrintOutcome(OSErr inResult, const AppleEvent* inReply) {
    if (inResult != noErr)
        WriteLine("Sending ended with error " + std::to_string(inResult));
    else if (inReply && !IsNullDesc(*inReply))
        DebugPrint("Got the reply", *inReply);
}

}  // namespace carbon
