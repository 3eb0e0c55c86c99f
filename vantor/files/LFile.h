// One file and the two forks of it that may be open.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Names a file, which need not exist, and owns the forks opened through it: they are closed when
// the object goes away or names another file. Permissions are the File Manager's (fsRdPerm, ...).
// Failures are thrown as LException with the platform's code. Opening a fork that is open already
// loses the first path to it: close it before.
class VANTOR_EXPORT LFile {
  public:
    LFile();
    explicit LFile(const FSSpec& inSpec);
    // The file that an alias leads to; `outWasChanged` tells whether the alias was brought up to
    // date. `inFromFile`, from where a relative alias starts, may be null.
    LFile(AliasHandle inAlias, Boolean& outWasChanged, FSSpec* inFromFile);
    virtual ~LFile();
    LFile(const LFile&) = delete;
    LFile& operator=(const LFile&) = delete;

    void GetSpecifier(FSSpec& outSpec) const;
    // Closes both forks first.
    virtual void SetSpecifier(const FSSpec& inSpec);
    bool UsesSpecifier(const FSSpec& inSpec) const;
    // Whether there is a file of that name. Never throws.
    bool SpecifierExists() const;
    // One name, but for the case of its letters, in one directory.
    static bool EqualFileSpec(const FSSpec& inFirst, const FSSpec& inSecond);

    // The caller owns the alias, which is null when it could not be made. Never throws.
    virtual AliasHandle MakeAlias(FSSpec* inFromFile);

    // A new file with an empty resource map, or with two empty forks.
    virtual void CreateNewFile(OSType inCreator, OSType inType, ScriptCode inScript);
    virtual void CreateNewDataFile(OSType inCreator, OSType inType, ScriptCode inScript);

    // The fork's reference number, which stays this object's.
    virtual SInt16 OpenDataFork(SInt16 inPermission);
    // Nothing when it is not open. The volume is flushed.
    virtual void CloseDataFork();
    // The whole data fork, which must be open, as a handle that the caller owns.
    virtual Handle ReadDataFork();
    // Makes `inLength` bytes all there is in the data fork; returns how many were written. Also
    // after a failure the fork ends with what was written.
    virtual SInt32 WriteDataFork(const void* inBuffer, SInt32 inLength);

    // -1 when the platform opens nothing and reports no error.
    virtual SInt16 OpenResourceFork(SInt16 inPermission);
    virtual void CloseResourceFork();

  protected:
    FSSpec mSpec;
    SInt16 mDataForkRefNum;      // -1: not open
    SInt16 mResourceForkRefNum;  // -1: not open
};
