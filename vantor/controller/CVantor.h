// The controller: everything the library asks of the recording application.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

enum : SInt32 {
    kVantorForeignException = -11000,  // an exception of another library
    kMirelNotFound = -11001,           // before Mac OS X: no volume holds one
    kMirelInvalid = -11002,            // found or running, but no version we can drive
    kMirelNoMedia = -11003,            // only mapped by VantorRequestBlankDisc, never raised
};

// The static members work on the recording application directly, launching it when it does not run.
// The one object of the class lives from InitiateSession to TerminateSession and remembers what the
// session changed there, to undo it. Failures are thrown as LException: system codes, the error
// number of the recording application's answer, or one of the codes above. Main thread only.
class VANTOR_EXPORT CVantor {
  public:
    CVantor();
    virtual ~CVantor();
    CVantor(const CVantor&) = delete;
    CVantor& operator=(const CVantor&) = delete;

    virtual void InitiateSelf();
    virtual void TerminateSelf();

    // The session.
    static void InitiateSession();
    static void TerminateSession();
    static Boolean IsSessionInitiated();
    static void SetAEIdleProc(AEIdleUPP inIdleProc);  // kept and later disposed; null: the default
    static AEIdleUPP GetAEIdleProc();
    static Boolean RunningOnX();
    static void BringMeToFront();

    // Finding, checking and launching the recording application.
    static int CompareVersions(NumVersion* inFirst, NumVersion* inSecond);  // 1 newer, -1 older
    static void ClearMem(void* outData, SInt32 inSize);
    static void FindMirel(FSSpec& outSpec);
    static Boolean IsMirelFileValid(FSSpec& inSpec);
    static Boolean IsMirelValid(ProcessSerialNumber inPSN);
    static Boolean IsMirelRunning(ProcessSerialNumber* outPSN);  // written before validation
    static ProcessSerialNumber LaunchMirel(unsigned char inPrepareParameters);
    static ProcessSerialNumber GetMirelPSN();
    static CFStringRef GetMirelPath();  // not retained; null before the first validation

    // Events and properties. Data goes in and out as a descriptor holds it, big-endian. A null
    // container means the application. The caller disposes descriptors given out.
    static void MakeMirelAppleEvent(UInt32 inClass, UInt32 inID, AEDesc& outEvent);
    static void SendSimpleMirelEvent(UInt32 inClass, UInt32 inID);
    static AEDesc GetDiscOneDesc();
    static void GetMirelPropertyData(UInt32 inProperty, UInt32 inDesiredType, UInt32* outActualType,
                                     void* outData, SInt32 inMaxSize, SInt32* outActualSize,
                                     AEDesc* inContainer);
    static void SetMirelPropertyData(UInt32 inProperty, UInt32 inType, void* inData, SInt32 inSize,
                                     AEDesc* inContainer);
    static Boolean GetMirelPropertyBoolean(UInt32 inProperty, AEDesc* inContainer);
    static SInt16 GetMirelPropertySInt16(UInt32 inProperty, AEDesc* inContainer);
    static SInt32 GetMirelPropertySInt32(UInt32 inProperty, AEDesc* inContainer);
    static void GetMirelPropertyPString(unsigned char* outString, UInt32 inProperty,
                                        AEDesc* inContainer);

    // The disc.
    static void MakeNewDisc(UInt32 inDiscClass);
    static void AddFiles(FSSpec* inFiles, SInt32 inCount);
    static void WriteDisc(SInt16 inWriteMode, SInt16 inEject, SInt16 inVerify, bool inQuit,
                          bool inBringToFront);
    static Boolean IsMirelBusy();
    static Boolean GetMirelServerMode();
    static void SetMirelServerMode(Boolean inOn);
    static Boolean GetMirelSimulationMode();
    static void SetMirelSimulationMode(Boolean inOn);
    static SInt32 GetMirelStatusCode();
    static void GetMirelStatusText(Str255 outText);
    static SInt32 GetMirelDiscSize();
    static SInt32 GetMirelMediaInfo();
    static SInt32 RequestBlankDisc();
    static void EjectDisc();
    static void BringMirelToFront();

    SInt32 mLaunchedMirel;    // 1: this session launched the recording application
    SInt32 mServerModeWasOn;  // 1: server mode was on before, or has been switched off again
    Boolean mHaveBlankDisc;   // 1: the last blank-disc request ended with media present

    static CVantor* sCurrentVantor;             // null when there is no session
    static SInt32 sUAppleEventsMgrInitialized;  // 1 after the first session was opened
    static AEIdleUPP sAEIdleProc;               // null until first needed
    static SInt32 sRunningOnX;                  // -1 not yet asked, 0 classic, 1 Mac OS X
    static CFStringRef sMirelPath;              // POSIX path of the last bundle examined
    static const NumVersion kMinimumMirelVersion;
};
