// What an application's own texts are written in.
#ifndef CARBON_MACAPPLICATION_H
#define CARBON_MACAPPLICATION_H

#include <Carbon/MacTypes.h>
#include <Carbon/TextCommon.h>

PLATFORM_DECLARATIONS_BEGIN

// The encoding and the script of the application's resources and byte strings. Linux: always
// kTextEncodingMacRoman and smRoman, as for an application in English.
TextEncoding GetApplicationTextEncoding(void);
ScriptCode GetApplicationScript(void);

PLATFORM_DECLARATIONS_END

#endif
