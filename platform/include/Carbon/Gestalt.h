// Gestalt: what this system is and can do.
//
// Values are kept per process. Those of the selectors named below are there from the start; a
// program may add, change and delete any, for instance to make the system look like an older one
// (gestaltSystemVersion below 0x1000 is the classic system).
#ifndef CARBON_GESTALT_H
#define CARBON_GESTALT_H

#include <Carbon/MacTypes.h>

// Versions.
enum {
    gestaltSystemVersion = 'sysv',       // BCD: 0x1049 is 10.4.9 or later in 10.4
    gestaltSystemVersionMajor = 'sys1',  // plain numbers
    gestaltSystemVersionMinor = 'sys2',
    gestaltSystemVersionBugFix = 'sys3',
    gestaltAppearanceVersion = 'apvr',  // BCD: 0x0110 is 1.1
    gestaltTimeMgrVersion = 'tmgr'
};

// Numbers of bits in the attributes after each selector.
enum {
    gestaltAppleEventsAttr = 'evnt',
    gestaltAppleEventsPresent = 0,
    gestaltScriptingSupport = 1,
    gestaltOSLInSystem = 2
};

enum {
    gestaltAppearanceAttr = 'appr',
    gestaltAppearanceExists = 0,
    gestaltAppearanceCompatMode = 1
};

enum {
    gestaltWindowMgrAttr = 'wind',
    gestaltWindowMgrPresentBit = 0,
    gestaltExtendedWindowAttributesBit = 1,
    gestaltHasFloatingWindowsBit = 2,
    gestaltHasWindowBufferingBit = 3,
    gestaltWindowLiveResizeBit = 4,
    gestaltWindowMinimizeToDockBit = 5,
    gestaltHasWindowShadowsBit = 6,
    gestaltSheetsAreWindowModalBit = 7
};

enum {
    gestaltMenuMgrAttr = 'menu',
    gestaltMenuMgrPresentBit = 0,
    gestaltMenuMgrAquaLayoutBit = 1,
    gestaltMenuMgrMultipleItemsWithCommandIDBit = 2,
    gestaltMenuMgrRetainsIconRefBit = 3,
    gestaltMenuMgrSendsMenuBoundsToDefProcBit = 4,
    gestaltMenuMgrMoreThanFiveMenusDeepBit = 5,
    gestaltMenuMgrCGImageMenuTitleBit = 6
};

enum { gestaltCFMAttr = 'cfrg', gestaltCFMPresent = 0 };

// Values of gestaltTimeMgrVersion.
enum { gestaltStandardTimeMgr = 1, gestaltRevisedTimeMgr = 2, gestaltExtendedTimeMgr = 3 };

// Works out a selector's value anew whenever it is asked for. Its result is Gestalt's.
typedef OSErr (*SelectorFunctionProcPtr)(OSType selector, SInt32* response);
typedef SelectorFunctionProcPtr SelectorFunctionUPP;

PLATFORM_DECLARATIONS_BEGIN

// Procedure pointers need no wrapping: New... returns the procedure, Dispose... does nothing,
// Invoke... calls it.
SelectorFunctionUPP NewSelectorFunctionUPP(SelectorFunctionProcPtr userRoutine);
void DisposeSelectorFunctionUPP(SelectorFunctionUPP userUPP);
OSErr InvokeSelectorFunctionUPP(OSType selector, SInt32* response, SelectorFunctionUPP userUPP);

// A selector's value. gestaltUndefSelectorErr when there is none, or what its function returns; the
// response is then left alone. paramErr for a null response.
OSErr Gestalt(OSType selector, SInt32* response);

// Adds a value. gestaltDupSelectorErr when the selector has one.
OSErr NewGestaltValue(OSType selector, SInt32 newValue);

// Changes a value, or a function to a value. gestaltUndefSelectorErr when there is none.
OSErr ReplaceGestaltValue(OSType selector, SInt32 replacementValue);

// Adds or changes a value.
OSErr SetGestaltValue(OSType selector, SInt32 newValue);

// Removes a value or function. gestaltUndefSelectorErr when there is none.
OSErr DeleteGestaltValue(OSType selector);

// Adds a function. gestaltDupSelectorErr when the selector has a value or function, paramErr for a
// null function.
OSErr NewGestalt(OSType selector, SelectorFunctionUPP gestaltFunction);

// Changes a function, or a value to a function. The one before goes to `oldGestaltFunction`, which
// may be null; it is null if there was a value. gestaltUndefSelectorErr when there is neither,
// paramErr for a null function.
OSErr ReplaceGestalt(OSType selector, SelectorFunctionUPP gestaltFunction,
                     SelectorFunctionUPP* oldGestaltFunction);

PLATFORM_DECLARATIONS_END

#endif
