// Looks for the words of a program; without them its codes do.
#include <cstdio>
#include <exception>

#include "Codes.h"
#include "Target.h"
#include "Vocabulary.h"

namespace cli {
namespace {

Vocabulary VocabularyAt(const std::string& inWhose, const std::string& inPath) {
    Notes notes;
    try {
        return {inWhose, ReadTerminologyOf(inPath, notes).value_or(Suites())};
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "vantor: the names of %s are not known: %s\n", Shown(inWhose).c_str(),
                     Shown(failure.what()).c_str());
    }
    return Vocabulary(inWhose + "'s dictionary cannot be read");
}

}  // namespace

Vocabulary VocabularyOf(const std::string& inTarget) {
    const auto running = FindTarget(inTarget);
    const std::string whose = running ? NameOf(*running) : inTarget;
    const auto path = running ? PathOf(*running) : FindApplication(inTarget);
    return path ? VocabularyAt(whose, *path)
                : Vocabulary("no application '" + inTarget + "' is there to have names");
}

Vocabulary VocabularyOf(const ProcessSerialNumber& inTarget) {
    const auto path = PathOf(inTarget);
    return path ? VocabularyAt(NameOf(inTarget), *path) : Vocabulary();
}

}  // namespace cli
