// Owns the table of Gestalt selectors.
#include <Carbon/Gestalt.h>
#include <Carbon/MacErrors.h>

#include <map>
#include <mutex>
#include <new>
#include <optional>

#include "posix/across_forks.h"

namespace carbon {
namespace {

struct Answer {
    SInt32 value;
    SelectorFunctionUPP function;  // asked instead when there is one
};

using Answers = std::map<OSType, Answer>;

constexpr SInt32 Bits(int inFirst, int inLast) {
    return (2 << inLast) - (1 << inFirst);
}

Answers Defaults() {
    return {
        {gestaltSystemVersion, {0x1049, nullptr}},
        {gestaltSystemVersionMajor, {10, nullptr}},
        {gestaltSystemVersionMinor, {4, nullptr}},
        {gestaltSystemVersionBugFix, {11, nullptr}},
        {gestaltAppearanceVersion, {0x0110, nullptr}},
        {gestaltTimeMgrVersion, {gestaltExtendedTimeMgr, nullptr}},
        {gestaltAppleEventsAttr, {Bits(gestaltAppleEventsPresent, gestaltOSLInSystem), nullptr}},
        {gestaltAppearanceAttr, {Bits(gestaltAppearanceExists, gestaltAppearanceExists), nullptr}},
        {gestaltWindowMgrAttr,
         {Bits(gestaltWindowMgrPresentBit, gestaltSheetsAreWindowModalBit), nullptr}},
        {gestaltMenuMgrAttr,
         {Bits(gestaltMenuMgrPresentBit, gestaltMenuMgrCGImageMenuTitleBit), nullptr}},
        {gestaltCFMAttr, {Bits(gestaltCFMPresent, gestaltCFMPresent), nullptr}},
    };
}

// Never destroyed: static objects may ask to the very end.
struct Table {
    std::mutex mutex;
    Answers answers = Defaults();
};

Table& Selectors() {
    static Table& table = *new Table;
    return table;
}

const HeldAcrossForks sHeld(Selectors().mutex);

enum class Presence { kNew, kOld, kEither };

OSErr CheckPresence(bool inFound, Presence inWanted) {
    if (inFound && inWanted == Presence::kNew) return gestaltDupSelectorErr;
    if (!inFound && inWanted == Presence::kOld) return gestaltUndefSelectorErr;
    return noErr;
}

OSErr Store(OSType inSelector, Answer inAnswer, Presence inWanted, Answer* outOld = nullptr) {
    const std::lock_guard lock(Selectors().mutex);
    Answers& answers = Selectors().answers;
    const auto found = answers.find(inSelector);
    if (const OSErr err = CheckPresence(found != answers.end(), inWanted)) return err;
    if (outOld) *outOld = found->second;
    try {
        answers.insert_or_assign(inSelector, inAnswer);
    } catch (const std::bad_alloc&) {
        return memFullErr;
    }
    return noErr;
}

std::optional<Answer> Find(OSType inSelector) {
    const std::lock_guard lock(Selectors().mutex);
    const auto found = Selectors().answers.find(inSelector);
    if (found == Selectors().answers.end()) return std::nullopt;
    return found->second;
}

OSErr Ask(const Answer& inAnswer, OSType inSelector, SInt32* outResponse) {
    SInt32 response = inAnswer.value;
    const OSErr err = inAnswer.function ? inAnswer.function(inSelector, &response) : OSErr(noErr);
    if (err == noErr) *outResponse = response;
    return err;
}

}  // namespace
}  // namespace carbon

using namespace carbon;

SelectorFunctionUPP NewSelectorFunctionUPP(SelectorFunctionProcPtr userRoutine) {
    return userRoutine;
}

void DisposeSelectorFunctionUPP(SelectorFunctionUPP) {}

OSErr InvokeSelectorFunctionUPP(OSType selector, SInt32* response, SelectorFunctionUPP userUPP) {
    return userUPP(selector, response);
}

OSErr Gestalt(OSType selector, SInt32* response) {
    if (!response) return paramErr;
    const auto answer = Find(selector);
    return answer ? Ask(*answer, selector, response) : OSErr(gestaltUndefSelectorErr);
}

OSErr NewGestaltValue(OSType selector, SInt32 newValue) {
    return Store(selector, {newValue, nullptr}, Presence::kNew);
}

OSErr ReplaceGestaltValue(OSType selector, SInt32 replacementValue) {
    return Store(selector, {replacementValue, nullptr}, Presence::kOld);
}

OSErr SetGestaltValue(OSType selector, SInt32 newValue) {
    return Store(selector, {newValue, nullptr}, Presence::kEither);
}

OSErr DeleteGestaltValue(OSType selector) {
    const std::lock_guard lock(Selectors().mutex);
    return Selectors().answers.erase(selector) ? OSErr(noErr) : OSErr(gestaltUndefSelectorErr);
}

OSErr NewGestalt(OSType selector, SelectorFunctionUPP gestaltFunction) {
    if (!gestaltFunction) return paramErr;
    return Store(selector, {0, gestaltFunction}, Presence::kNew);
}

OSErr ReplaceGestalt(OSType selector, SelectorFunctionUPP gestaltFunction,
                     SelectorFunctionUPP* oldGestaltFunction) {
    if (!gestaltFunction) return paramErr;
    Answer old;
    const OSErr err = Store(selector, {0, gestaltFunction}, Presence::kOld, &old);
    if (err == noErr && oldGestaltFunction) *oldGestaltFunction = old.function;
    return err;
}
