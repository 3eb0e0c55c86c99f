// The codes of the conversation with the recording application; see docs/recorder-dictionary.md for
// what each means over there.
#pragma once

#include <Carbon/Carbon.h>

enum : FourCharCode {
    kMirelSignature = 'Fv8k',  // its creator on disk
    kMirelEventClass = kMirelSignature,
    kMirelFileType = 'APPL',

    kMirelAddFiles = 'addD',
    kMirelWrite = 'wrIt',
    kMirelRequestBlankDisc = 'RDsc',
    kMirelEject = 'Ejct',
    kMirelEndSession = 'EndB',

    cMirelDisc = 'Disc',
    pMirelServerMode = 'srvM',
    pMirelSimulationMode = 'simM',
    pMirelStatusCode = 'sCod',
    pMirelStatusText = 'sTxt',
    pMirelDiscSize = 'DRsi',
    pMirelMediaInfo = 'mInf',

    keyMirelEject = 'ejWd',
    keyMirelVerify = 'Veri',
    keyMirelQuit = 'Quit',
    keyMirelAsynchronous = 'Asyn',
    keyMirelAskUser = 'askU',
    keyMirelWriteAs = 'wrAs',
    kMirelWriteAsSession = 'WAse',
    keyMirelServer = 'srVR',
};
