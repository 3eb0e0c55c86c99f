// Code Fragment Manager: symbols of libraries that the program has loaded.
//
// Linux: a fragment is a shared object. Its name is that of its file, with or without the "lib" in
// front and the ".so" and version behind.
#ifndef CARBON_CODEFRAGMENTS_H
#define CARBON_CODEFRAGMENTS_H

#include <Carbon/MacTypes.h>

typedef struct OpaqueCFragConnectionID* CFragConnectionID;

// All but the 68K one name the machine's own code here.
typedef OSType CFragArchitecture;
enum {
    kPowerPCCFragArch = 'pwpc',
    kMotorola68KCFragArch = 'm68k',
    kAnyCFragArch = '\?\?\?\?',
    kCompiledCFragArch = 'none'
};

typedef OptionBits CFragLoadOptions;
enum {
    kReferenceCFrag = 1,
    kFindCFrag = 2,  // only what is loaded already
    kPrivateCFragCopy = 5,
    kLoadCFrag = 1
};

typedef UInt8 CFragSymbolClass;
enum {
    kCodeCFragSymbol = 0,
    kDataCFragSymbol = 1,
    kTVectorCFragSymbol = 2,
    kTOCCFragSymbol = 3,
    kGlueCFragSymbol = 4
};

PLATFORM_DECLARATIONS_BEGIN

// A connection to a library, for FindSymbol. With kFindCFrag a library counts only when the program
// has loaded it, and stays as loaded as it is; with kReferenceCFrag it is loaded if need be and
// kept until CloseConnection. `mainAddr` gets null (a shared object has no main symbol),
// `errMessage` an empty string or the name of what could not be found; both may be null, as may the
// connection with kFindCFrag. Returns cfragArchitectureErr for a 'm68k' or unknown architecture,
// cfragNoLibraryErr when there is no such library, paramErr for other options, cfragNoClientMemErr.
OSErr GetSharedLibrary(ConstStr63Param libName, CFragArchitecture archType,
                       CFragLoadOptions loadFlags, CFragConnectionID* connID, Ptr* mainAddr,
                       Str255 errMessage);

// The address of what a library exports under this name, and whether it is code or data; both may
// be null. Symbols of the libraries that it needs itself do not count.
// Returns cfragConnectionIDErr, or cfragNoSymbolErr.
OSErr FindSymbol(CFragConnectionID connID, ConstStr255Param symName, Ptr* symAddr,
                 CFragSymbolClass* symClass);

// Ends a connection; *connID becomes null. Connections of kFindCFrag need not be ended. Returns
// cfragConnectionIDErr for what is none.
OSErr CloseConnection(CFragConnectionID* connID);

PLATFORM_DECLARATIONS_END

#endif
