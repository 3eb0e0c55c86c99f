// Script Manager: which bytes of a text are characters, and the tables of a script.
//
// The system's script is always Roman. The current script is Roman too unless the embedding program
// switches it (PlatformSetCurrentScript). Japanese, Korean and both Chinese have characters of two
// bytes; every other script's have one.
#ifndef CARBON_SCRIPT_H
#define CARBON_SCRIPT_H

#include <Carbon/MacTypes.h>

// Scripts.
enum { smAllScripts = -3, smCurrentScript = -2, smSystemScript = -1 };
enum {
    smRoman = 0,
    smJapanese = 1,
    smTradChinese = 2,
    smKorean = 3,
    smArabic = 4,
    smHebrew = 5,
    smGreek = 6,
    smCyrillic = 7,
    smSimpChinese = 25,
    smCentralEuroRoman = 29,
    smUninterp = 32
};
enum { iuCurrentScript = -2, iuSystemScript = -1 };

// What language the texts of a script are in.
enum {
    langEnglish = 0,
    langJapanese = 11,
    langTradChinese = 19,
    langKorean = 23,
    langSimpChinese = 33
};

// What a byte of a text is.
enum { smFirstByte = -1, smSingleByte = 0, smLastByte = 1, smMiddleByte = 2 };

// Tables of a script. Only the number parts (see NumberFormatting.h) are there.
enum {
    smWordSelectTable = 0,
    smWordWrapTable = 1,
    smNumberPartsTable = 2,
    smUnTokenTable = 3,
    smWhiteSpaceList = 4,
    iuWordSelectTable = 0,
    iuWordWrapTable = 1,
    iuNumberPartsTable = 2,
    iuUnTokenTable = 3,
    iuWhiteSpaceList = 4
};

// What GetScriptManagerVariable and GetScriptVariable tell.
enum { smSysScript = 18, smKeyScript = 22 };
enum { smScriptEnabled = 4, smScriptLang = 28 };

// For each byte 1 if it is the first of a character of two, 0 if it is a character by itself.
typedef char CharByteTable[256];

PLATFORM_DECLARATIONS_BEGIN

// What the byte at `offset` (0 is the first) of a text is: smSingleByte, smFirstByte or smLastByte.
// The text starts with a whole character. A negative offset is answered with smSingleByte.
SInt16 CharacterByteType(Ptr textBuf, SInt16 textOffset, ScriptCode script);

// Fills the table for a script. False, and a table of zeros, for a number that is no script's.
Boolean FillParseTable(CharByteTable table, ScriptCode script);

// A table of a script: the handle that it lies in, its first byte there and its length in bytes. A
// handle of null, and zeros, when the script (neither Roman nor the current one) or the table is
// not there, or memory is short. The handle belongs to the system and stays as it is: do not
// dispose of it or change it. Numbers in the table are in the machine's byte order.
void GetIntlResourceTable(ScriptCode script, SInt16 tableCode, Handle* itlHandle, SInt32* offset,
                          SInt32* length);

// smSysScript and smKeyScript: the system's and the current script. 0 for any other selector.
SInt32 GetScriptManagerVariable(SInt16 selector);

// smScriptEnabled: 1 for Roman and the current script. smScriptLang: the language of a script that
// is enabled. 0 for any other script or selector.
SInt32 GetScriptVariable(SInt16 script, SInt16 selector);

PLATFORM_DECLARATIONS_END

#endif
