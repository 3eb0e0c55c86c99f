// Owns changing the case and the marks of texts in place.
#include <Carbon/MacErrors.h>
#include <Carbon/TextUtils.h>

#include "resource_manager/res_error.h"
#include "text_utilities/folding.h"
#include "text_utilities/scripts.h"

namespace carbon {
namespace {

void Fold(UInt8* ioText, SInt32 inLength, const ByteTable& inTable) {
    for (SInt32 i = 0; i < inLength; ++i) ioText[i] = inTable[ioText[i]];
}

// A script's tables are resources of the system, so a missing one is told through ResError.
void ChangeText(Ptr ioText, SInt16 inLength, ScriptCode inScript, const ByteTable& inTable) {
    const bool hasTables = ResolvedScript(inScript) == smRoman;
    SetResError(hasTables ? OSErr(noErr) : OSErr(resNotFound));
    if (hasTables) Fold(reinterpret_cast<UInt8*>(ioText), inLength, inTable);
}

}  // namespace
}  // namespace carbon

using namespace carbon;

void UpperString(Str255 theString, Boolean diacSensitive) {
    Fold(theString + 1, theString[0], NameFolding(false, diacSensitive));
}

void UppercaseText(Ptr textPtr, SInt16 len, ScriptCode script) {
    ChangeText(textPtr, len, script, kTextCapitals);
}

void LowercaseText(Ptr textPtr, SInt16 len, ScriptCode script) {
    ChangeText(textPtr, len, script, kTextSmallLetters);
}

void StripDiacritics(Ptr textPtr, SInt16 len, ScriptCode script) {
    ChangeText(textPtr, len, script, kTextUnmarked);
}

void UppercaseStripDiacritics(Ptr textPtr, SInt16 len, ScriptCode script) {
    ChangeText(textPtr, len, script, kTextUnmarkedCapitals);
}
