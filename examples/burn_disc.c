/* Burns the files named on the command line, in plain C, with the library's public headers only.
 *
 *     burn_disc FILE...
 *
 * The disc stays in the drive that the recorder has chosen: with an image drive, as a file in its
 * tray. */
#include <Carbon/Carbon.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include "vantor/api/Vantor.h"

static int Failed(const char* inWhat, SInt32 inCode) {
    fprintf(stderr, "burn_disc: could not %s [%d]\n", inWhat, (int)inCode);
    return EXIT_FAILURE;
}

/* A path as the record that travels in events. */
static OSStatus SpecOf(const char* inPath, FSSpec* outSpec) {
    FSRef ref;
    OSStatus status = FSPathMakeRef((const UInt8*)inPath, &ref, NULL);
    if (status != noErr) return status;
    return FSGetCatalogInfo(&ref, kFSCatInfoNone, NULL, NULL, outSpec, NULL);
}

/* Shows the recorder's own words until it is idle, and gives its last status code: negative when
 * writing failed. */
static SInt32 FollowWriting(void) {
    SInt32 code = 0;
    Str255 text = "";
    while (VantorIsMirelBusy()) {
        if (VantorGetStatusText(text) == noErr) printf("%.*s\n", text[0], (const char*)text + 1);
        usleep(200 * 1000);
    }
    VantorGetStatusCode(&code);
    VantorGetStatusText(text);
    printf("%.*s\n", text[0], (const char*)text + 1);
    return code;
}

static int Burn(FSSpec* inFiles, SInt32 inCount) {
    SInt32 status = VantorMakeNewDisc('Data');
    if (status != noErr) return Failed("make a disc", status);
    status = VantorAddFiles(inFiles, inCount);
    if (status != noErr) return Failed("add the files", status);
    status = VantorWriteDiscWithOptions(1, 0, 1, 0, 0);
    if (status != noErr) return Failed("start writing", status);
    status = FollowWriting();
    return status < 0 ? Failed("write the disc", status) : EXIT_SUCCESS;
}

int main(int inCount, char** inWords) {
    const SInt32 count = inCount - 1;
    if (count < 1) return Failed("burn nothing: name a file", paramErr);

    FSSpec* files = calloc((size_t)count, sizeof *files);
    if (files == NULL) return Failed("remember the files", memFullErr);
    int result = EXIT_SUCCESS;
    for (SInt32 i = 0; i < count && result == EXIT_SUCCESS; ++i) {
        const OSStatus status = SpecOf(inWords[i + 1], &files[i]);
        if (status != noErr) result = Failed(inWords[i + 1], status);
    }

    if (result == EXIT_SUCCESS) {
        SInt32 status = VantorInitiateSession();
        result = status == noErr ? Burn(files, count) : Failed("open a session", status);
        status = VantorTerminateSession();
        if (status != noErr) result = Failed("end the session", status);
    }
    free(files);
    return result;
}
