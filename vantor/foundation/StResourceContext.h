// Guards that put the Resource Manager's state back: the load flag and the current file.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

// Turns the loading of resources on or off for a scope.
class VANTOR_EXPORT StResLoad {
  public:
    explicit StResLoad(Boolean inLoad);
    ~StResLoad();
    StResLoad(const StResLoad&) = delete;
    StResLoad& operator=(const StResLoad&) = delete;

  protected:
    Boolean mSavedLoad;
};

// Makes another resource file the current one for a scope. With -1 it only restores at the end.
class VANTOR_EXPORT StCurResFile {
  public:
    explicit StCurResFile(SInt16 inRefNum);
    ~StCurResFile();
    StCurResFile(const StCurResFile&) = delete;
    StCurResFile& operator=(const StCurResFile&) = delete;

  protected:
    SInt16 mSavedRefNum;
};

// A resource file to work in, entered and left more than once if need be. Contexts nest: the
// innermost entered one is the current context. One for -1 is not valid and changes no file.
class VANTOR_EXPORT StResourceContext {
  public:
    explicit StResourceContext(SInt16 inRefNum);
    virtual ~StResourceContext();
    StResourceContext(const StResourceContext&) = delete;
    StResourceContext& operator=(const StResourceContext&) = delete;

    void Enter();
    // Makes the file current that was so when the context was entered. After the outermost context
    // has been left, it is still what GetCurrentRefNum and CurrentContextIsValid speak of.
    void Exit();
    // Leaves the context for good and turns this into a guard of the file that is current now:
    // Exit, or the end of the scope, makes that one current again.
    void Save();

    bool IsValid() const { return mIsValid != 0; }
    bool InContext() const { return mInContext != 0; }

    static bool CurrentContextIsValid();
    // The file of the current context, 0 without one.
    static SInt16 GetCurrentRefNum();

    static StResourceContext* sCurrentContext;
    static SInt16 sAppContext;  // the file that was current when the library was loaded

  protected:
    UInt32 mIsValid;
    UInt32 mInContext;
    UInt32 mSavedMode;
    SInt16 mSavedRefNum;
    SInt16 mContextRefNum;
    StResourceContext* mEnclosing;
};
