// A text from a stranger, built as a value and as parameters: refused with a place inside the text,
// or made into something that prints as a text which makes the same again.
#include <Carbon/Carbon.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "apple_event_manager/text/build_parser.h"
#include "apple_event_manager/text/print.h"

namespace {

void Require(bool inHolds) {
    if (!inHolds) std::abort();
}

// True when the text was taken. Without arguments: a stranger's `@` would take what is not there.
template <typename Body>
bool Builds(size_t inSize, Body inBody) {
    try {
        inBody();
        return true;
    } catch (const carbon::BuildFailure& failure) {
        const bool isSyntax = failure.result == errAEBuildSyntaxError;
        Require(isSyntax == (failure.error.fError != UInt32(aeBuildSyntaxNoErr)));
        Require(failure.error.fErrorPos <= inSize);
        return false;
    }
}

void BuildAgain(const AEDesc& inDesc) {
    const std::string text = carbon::PrintedDesc(inDesc);
    carbon::TemporaryDesc again;
    Require(Builds(text.size(), [&] { carbon::BuildParser(text, nullptr).Whole(again.Get()); }));
    Require(std::ranges::equal(carbon::EventBytes(inDesc), carbon::EventBytes(*again)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inData, size_t inSize) {
    const std::string text(reinterpret_cast<const char*>(inData),
                           size_t(std::find(inData, inData + inSize, UInt8{0}) - inData));
    carbon::TemporaryDesc value, event;
    if (Builds(text.size(), [&] { carbon::BuildParser(text, nullptr).Whole(value.Get()); }))
        BuildAgain(*value);
    Require(AECreateAppleEvent('core', 'getd', nullptr, 1, 0, event.Get()) == noErr);
    if (Builds(text.size(), [&] {
            carbon::BuildParser(text, nullptr).WholeParameters(*carbon::EventOf(event.Get()));
        }))
        BuildAgain(*event);
    return 0;
}
