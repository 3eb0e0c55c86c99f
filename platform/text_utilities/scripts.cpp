// Owns the current script and what the Script Manager tells about scripts and their characters.
#include "text_utilities/scripts.h"

#include <Platform/Platform.h>

#include <algorithm>
#include <atomic>
#include <iterator>

namespace carbon {
namespace {

constinit std::atomic<ScriptCode> gCurrentScript = smRoman;

// The bytes from `first` to `last` begin a character of two bytes.
struct FirstBytes {
    ScriptCode script;
    UInt8 first;
    UInt8 last;
};

constexpr FirstBytes kFirstBytes[] = {
    {smJapanese, 0x81, 0x9F},    {smJapanese, 0xE0, 0xFC}, {smKorean, 0xA1, 0xAC},
    {smKorean, 0xB0, 0xC8},      {smKorean, 0xCA, 0xFD},   {smTradChinese, 0xA1, 0xFC},
    {smSimpChinese, 0xA1, 0xFC},
};

struct Language {
    ScriptCode script;
    SInt32 language;
};

constexpr Language kLanguages[] = {
    {smRoman, langEnglish}, {smJapanese, langJapanese},       {smTradChinese, langTradChinese},
    {smKorean, langKorean}, {smSimpChinese, langSimpChinese},
};

SInt32 LanguageOf(ScriptCode inScript) {
    const auto found = std::find_if(std::begin(kLanguages), std::end(kLanguages),
                                    [=](const Language& l) { return l.script == inScript; });
    return found == std::end(kLanguages) ? SInt32(langEnglish) : found->language;
}

}  // namespace

ScriptCode ResolvedScript(ScriptCode inScript) {
    if (inScript == smSystemScript) return smRoman;
    return inScript == smCurrentScript ? gCurrentScript.load() : inScript;
}

bool IsEnabled(ScriptCode inScript) {
    const ScriptCode script = ResolvedScript(inScript);
    return script == smRoman || script == gCurrentScript;
}

bool IsFirstByte(UInt8 inByte, ScriptCode inScript) {
    return std::any_of(std::begin(kFirstBytes), std::end(kFirstBytes), [&](const FirstBytes& r) {
        return r.script == inScript && inByte >= r.first && inByte <= r.last;
    });
}

}  // namespace carbon

using namespace carbon;

SInt16 CharacterByteType(Ptr textBuf, SInt16 textOffset, ScriptCode script) {
    const ScriptCode resolved = ResolvedScript(script);
    SInt16 type = smSingleByte;
    for (SInt32 i = 0; i <= textOffset; ++i) {
        const bool isFirst = type != smFirstByte && IsFirstByte(UInt8(textBuf[i]), resolved);
        type = SInt16(type == smFirstByte ? smLastByte : isFirst ? smFirstByte : smSingleByte);
    }
    return type;
}

Boolean FillParseTable(CharByteTable table, ScriptCode script) {
    const ScriptCode resolved = ResolvedScript(script);
    for (unsigned i = 0; i < sizeof(CharByteTable); ++i)
        table[i] = IsFirstByte(UInt8(i), resolved) ? 1 : 0;
    return resolved >= smRoman && resolved <= smUninterp;
}

SInt32 GetScriptManagerVariable(SInt16 selector) {
    if (selector == smKeyScript) return ResolvedScript(smCurrentScript);
    return smRoman;  // the system's script, and what an unknown selector is answered with
}

SInt32 GetScriptVariable(SInt16 script, SInt16 selector) {
    if (!IsEnabled(script)) return 0;
    if (selector == smScriptEnabled) return 1;
    return selector == smScriptLang ? LanguageOf(ResolvedScript(script)) : 0;
}

void PlatformSetCurrentScript(ScriptCode script) {
    gCurrentScript = script;
}
