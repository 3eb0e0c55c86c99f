// Alerts.
//
// Linux: there is no screen and no alert resource. Two alerts exist, 251 (an exception is thrown)
// and 252 (a signal), each with the items 1 continue, 4 quit, 5 enter the debugger and 6 do not
// show again. On a terminal they are printed and answered there; without one the text goes to
// standard error and the answer is 1. Platform/Platform.h lets a program answer them itself.
#ifndef CARBON_DIALOGS_H
#define CARBON_DIALOGS_H

#include <Carbon/MacTypes.h>

struct EventRecord;

typedef struct OpaqueDialogPtr* DialogPtr;
typedef DialogPtr DialogRef;
typedef SInt16 DialogItemIndex;  // from 1

// Sees the events of a dialogue before it does. No event ever reaches an alert here, so none is
// called.
typedef Boolean (*ModalFilterProcPtr)(DialogRef theDialog, struct EventRecord* theEvent,
                                      DialogItemIndex* itemHit);
typedef ModalFilterProcPtr ModalFilterUPP;

PLATFORM_DECLARATIONS_BEGIN

// Procedure pointers need no wrapping: New... returns the procedure, Dispose... does nothing,
// Invoke... calls it.
ModalFilterUPP NewModalFilterUPP(ModalFilterProcPtr userRoutine);
void DisposeModalFilterUPP(ModalFilterUPP userUPP);
Boolean InvokeModalFilterUPP(DialogRef theDialog, struct EventRecord* theEvent,
                             DialogItemIndex* itemHit, ModalFilterUPP userUPP);

// Sets the texts (MacRoman) that stand for ^0 to ^3 in the alerts shown from now on. A null text
// leaves the one before. The texts are copied.
void ParamText(ConstStr255Param param0, ConstStr255Param param1, ConstStr255Param param2,
               ConstStr255Param param3);

// Shows an alert, plain or marked as stop, note or caution, and returns the item that answers it;
// -1, and nothing is shown, when there is no alert with this number. `modalFilter` may be null.
DialogItemIndex Alert(SInt16 alertID, ModalFilterUPP modalFilter);
DialogItemIndex StopAlert(SInt16 alertID, ModalFilterUPP modalFilter);
DialogItemIndex NoteAlert(SInt16 alertID, ModalFilterUPP modalFilter);
DialogItemIndex CautionAlert(SInt16 alertID, ModalFilterUPP modalFilter);

PLATFORM_DECLARATIONS_END

#endif
