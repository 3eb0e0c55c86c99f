// The desktop file: what a volume without a desktop database keeps instead, a resource file of type
// 'FNDR' and creator 'ERIK' in its root. For the other files of this folder.
#pragma once

#include <Carbon/Carbon.h>

// The file's name, into 256 bytes. Without such a file, the error that ended looking for it.
OSErr GetDesktopFileName(FSVolumeRefNum inVRefNum, StringPtr outName);

// Opens the desktop file's resource fork for reading, without loading anything, and makes it the
// current resource file; at the end of the scope the one before is current again.
class StDesktopFile {
  public:
    StDesktopFile(FSVolumeRefNum inVRefNum, ConstStr255Param inName);
    ~StDesktopFile();
    StDesktopFile(const StDesktopFile&) = delete;
    StDesktopFile& operator=(const StDesktopFile&) = delete;

    bool IsOpen() const { return mRefNum != -1; }
    OSErr Error() const { return mError; }  // why it could not be opened

  private:
    SInt16 mPrevious;
    SInt16 mRefNum;
    OSErr mError = noErr;
};

// The first application that the desktop file names for a creator; the file itself is not looked
// at. Returns -5012 (afpItemNotFound) when there is none, or no file that can be read.
OSErr GetAPPLFromDesktopFile(ConstStr255Param inVolName, FSVolumeRefNum inVRefNum, OSType inCreator,
                             FSVolumeRefNum* outVRefNum, SInt32* outParID, StringPtr outName);
