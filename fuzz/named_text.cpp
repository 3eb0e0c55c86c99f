// Names in the text of values: any text gets names behind its codes, and becomes codes or is
// refused, with a place in it for each character.
#include <cstdlib>

#include "cli/NamedText.h"

namespace {

cli::Vocabulary MakeWords() {
    cli::Suite suite;
    cli::ClassTerm term;
    term.name = "disc";
    term.code = 'Disc';
    term.properties = {{"name", 'pnam', {}}, {"volume size", 'vsiz', {}}};
    suite.classes = {term};
    cli::EventTerm event;
    event.name = "write";
    event.eventClass = event.code = 'wrIt';
    event.parameters = {{"gently", 'gent', {}}};
    suite.events = {event};
    return {"Writer", {suite}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inBytes, size_t inSize) {
    static const cli::Vocabulary words = MakeWords();
    const std::string text(reinterpret_cast<const char*>(inBytes), inSize);
    const cli::EventTerm* const event = words.FindEvent("write");
    cli::WithNames(text, words, event);
    try {
        const cli::CodedText coded = cli::WithCodes(text, words, event);
        for (const size_t place : coded.places)
            if (place > text.size()) std::abort();
    } catch (const cli::UnknownName& unknown) {
        if (unknown.Place() > text.size()) std::abort();
    }
    return 0;
}
