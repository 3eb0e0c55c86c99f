// Formats of strings: any format, with arguments that suit it (up to sixteen, eight of them reals,
// each where the calling convention puts it). Its directives stand in order inside it, and no field
// is wider than the limit.
#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "core_foundation/internal.h"
#include "core_foundation/strings/format_directive.h"

namespace {

using carbon::ArgumentType;
using carbon::Directive;

// Valid as a C string, as a Pascal string and as UniChars.
const UInt8 kAnyText[] = {3, 'a', 'b', 'c', 0, 0, 0, 0};

struct Wanted {
    size_t arguments = 0, reals = 0;
    bool objects = false, texts = false;
};

Wanted ArgumentsOf(const std::vector<Directive>& inDirectives) {
    Wanted wanted;
    const auto types = carbon::ArgumentTypes(inDirectives);
    wanted.arguments = types.size();
    wanted.reals =
        static_cast<size_t>(std::count(types.begin(), types.end(), ArgumentType::kDouble));
    for (const Directive& directive : inDirectives) {
        if (directive.type != ArgumentType::kPointer) continue;
        (directive.letter == u'@' ? wanted.objects : wanted.texts) = true;
    }
    return wanted;
}

// An argument that is named twice as things of different types has none that suits it.
bool HasOneTypeEach(const std::vector<Directive>& inDirectives) {
    const auto types = carbon::ArgumentTypes(inDirectives);
    return std::all_of(inDirectives.begin(), inDirectives.end(), [&](const Directive& directive) {
        const auto isInt = [&](int inArgument) {
            return inArgument < 0 || types[static_cast<size_t>(inArgument)] == ArgumentType::kInt;
        };
        const bool isOwn = directive.argument < 0 || directive.type == ArgumentType::kNone ||
                           types[static_cast<size_t>(directive.argument)] == directive.type;
        return isOwn && isInt(directive.width.argument) && isInt(directive.precision.argument);
    });
}

CFStringRef Formatted(CFStringRef inFormat, const void* inArgument) {
    const auto a = reinterpret_cast<long>(inArgument);
    return CFStringCreateWithFormat(nullptr, nullptr, inFormat, a, a, a, a, a, a, a, a, 1.5, -1e300,
                                    0.0, 1e-300, 1.0 / 3, 12345.678, -0.0, 1e17, a, a, a, a, a, a,
                                    a, a, a, a, a, a);
}

void CheckPlaces(const std::vector<Directive>& inDirectives, size_t inLength) {
    size_t done = 0;
    for (const Directive& directive : inDirectives) {
        const bool isInside = directive.start >= done && directive.end > directive.start;
        if (!isInside || directive.end > inLength) std::abort();
        done = directive.end;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const UInt8* inBytes, size_t inSize) {
    CFStringRef format = CFStringCreateWithBytes(nullptr, inBytes, static_cast<CFIndex>(inSize),
                                                 kCFStringEncodingMacRoman, false);
    std::u16string units(inSize, u'\0');
    CFStringGetCharacters(format, CFRangeMake(0, CFStringGetLength(format)),
                          reinterpret_cast<UniChar*>(units.data()));
    const auto directives = carbon::ParseFormat(units);
    CheckPlaces(directives, units.size());
    const Wanted wanted = ArgumentsOf(directives);
    const bool suits = wanted.arguments <= 16 && wanted.reals <= 8 &&
                       !(wanted.objects && wanted.texts) && HasOneTypeEach(directives);
    if (suits) {
        CFStringRef made = Formatted(
            format, wanted.objects ? CFSTR("object") : static_cast<const void*>(kAnyText));
        const auto most = static_cast<CFIndex>(inSize + directives.size() * 1024);
        if (!made || CFStringGetLength(made) > most) std::abort();
        CFRelease(made);
    }
    CFRelease(format);
    return 0;
}
