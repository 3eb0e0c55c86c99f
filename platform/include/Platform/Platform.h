// What programs that embed or test the platform may change about it. Nothing here was ever part of
// Carbon; applications and libraries that run on the platform have no business with it.
#ifndef PLATFORM_PLATFORM_H
#define PLATFORM_PLATFORM_H

#include <Carbon/Files.h>
#include <Carbon/MacTypes.h>

PLATFORM_DECLARATIONS_BEGIN

// --- Debugger, alerts and the end of the program ---
// Each hook gets the context it was set with, on the thread that made the call, and stays until
// another one or null (the platform's own behaviour) takes its place. The hooks may be called from
// several threads at once; texts are the platform's and only good during the call.

// Receives, a piece at a time, what would go to standard error: texts for the debugger, unanswered
// alerts, notifications. UTF-8, with its line end.
typedef void (*PlatformTextSink)(const char* text, void* context);
void PlatformSetTextSink(PlatformTextSink sink, void* context);

// Called by DebugStr with its text, by Debugger with an empty one. Without a hook the text goes to
// the text sink and the program goes on.
typedef void (*PlatformDebuggerHook)(ConstStr255Param text, void* context);
void PlatformSetDebuggerHook(PlatformDebuggerHook hook, void* context);

enum {
    kPlatformPlainAlert = 0,
    kPlatformStopAlert = 1,
    kPlatformNoteAlert = 2,
    kPlatformCautionAlert = 3
};

// An alert about to be shown.
typedef struct PlatformAlert {
    SInt16 alertID;
    SInt16 kind;
    ConstStringPtr params[4];  // what ^0 to ^3 stand for, never null
    const char* text;          // the whole text with these put in, UTF-8
} PlatformAlert;

// Answers an alert: its result is that of Alert, StopAlert and the others.
typedef SInt16 (*PlatformAlertHook)(const PlatformAlert* alert, void* context);
void PlatformSetAlertHook(PlatformAlertHook hook, void* context);

// Called by ExitToShell in place of leaving the program. If it returns, so does ExitToShell.
typedef void (*PlatformExitHook)(void* context);
void PlatformSetExitHook(PlatformExitHook hook, void* context);

// --- Text ---

// Makes a script (smRoman, or smJapanese and any other of Script.h) the current one, which texts
// are taken to be in when a call names smCurrentScript. The system's script stays Roman.
void PlatformSetCurrentScript(ScriptCode script);

// --- Memory ---

// How many handles, and how many fixed blocks, are live now. A test that finds more of them
// afterwards than before has found a leak.
UInt32 PlatformCountHandles(void);
UInt32 PlatformCountPointers(void);

// --- Folders mounted as volumes ---

// What such a volume lacks or is, beside being a volume like any other. The calls behind a
// capability that is taken away refuse, and its bit is clear.
enum {
    kPlatformMountNoCatalogSearch = 0x0001,
    kPlatformMountNoDesktopManager = 0x0002,
    kPlatformMountHardwareLocked = 0x0004,  // may not be changed: wPrErr
    kPlatformMountSoftwareLocked = 0x0008,  // may not be changed: vLckdErr; PBSetVInfo can end it
    kPlatformMountEjectable = 0x0010,
    kPlatformMountRemote = 0x0020,  // a server's: with a file system ID, a server's address and a
                                    // mount record
    kPlatformMountNoOpenDeny = 0x0040,
    kPlatformMountNoMoveRename = 0x0080,
    kPlatformMountNoCopyFile = 0x0100,
    kPlatformMountNoFileIDs = 0x0200,
    kPlatformMountNoAccessControl = 0x0400,
    kPlatformMountNoUserGroupList = 0x0800,
    kPlatformMountNoFolderLock = 0x1000,
    kPlatformMountNoExchange = 0x2000,
    kPlatformMountNoOpenDataFork = 0x4000,      // PBHOpenDF answers paramErr, PBHOpen works
    kPlatformMountNoVolumeParameters = 0x8000,  // PBHGetVolParms answers paramErr
    kPlatformMountParametersVersion1 = 0x10000  // PBHGetVolParms gives the first 14 bytes
};

// Makes a folder the root of a volume of its own, behind the volumes that are there already, for
// every process of the user. It stays so until it is unmounted or the computer restarts, also after
// this process has ended, and has the same number each time.
//   path     of a folder; UTF-8
//   name     the volume's, UTF-8; null for the folder's own. Cut to 27 characters; a number is
//            added where another volume has that name
//   options  those above, added up; they hold until it is unmounted
// Returns fnfErr or dirNFErr when there is no such folder, volOnLinErr when it is a volume's root
// already, ioErr when the list of such folders cannot be written, paramErr for unknown options.
OSErr PlatformMountFolderWithOptions(const char* path, const char* name, OptionBits options,
                                     FSVolumeRefNum* vRefNum);

// The same without options.
OSErr PlatformMountFolder(const char* path, const char* name, FSVolumeRefNum* vRefNum);

// Ends that, also while forks on it are open, which go on; the folder and its files stay. Returns
// nsvErr, and fBsyErr for a volume that is no mounted folder.
OSErr PlatformUnmountFolder(FSVolumeRefNum vRefNum);

PLATFORM_DECLARATIONS_END

#endif
