// Notification Manager: telling the user something from the background.
//
// Linux: a notification's text goes to where developers' and users' texts go (standard error, or
// the text sink of Platform/Platform.h) at once; its mark, icon and sound have nowhere to appear.
#ifndef CARBON_NOTIFICATION_H
#define CARBON_NOTIFICATION_H

#include <Carbon/MacTypes.h>
#include <Carbon/OSUtils.h>

struct NMRec;

// Called once the notification was shown.
typedef void (*NMProcPtr)(struct NMRec* nmReqPtr);
typedef NMProcPtr NMUPP;

#pragma pack(push, 2)

// A request. It belongs to the caller and must stay where it is while it is installed.
struct NMRec {
    QElemPtr qLink;
    SInt16 qType;  // nmType
    SInt16 nmFlags;
    SInt32 nmPrivate;
    SInt16 nmReserved;
    SInt16 nmMark;
    Handle nmIcon;
    Handle nmSound;
    StringPtr nmStr;  // MacRoman; null for none
    NMUPP nmResp;     // null for none; -1: the request removes itself when shown
    SInt32 nmRefCon;  // the caller's own
};
typedef struct NMRec NMRec;
typedef NMRec* NMRecPtr;

#pragma pack(pop)

PLATFORM_DECLARATIONS_BEGIN

// Procedure pointers need no wrapping: New... returns the procedure, Dispose... does nothing,
// Invoke... calls it.
NMUPP NewNMUPP(NMProcPtr userRoutine);
void DisposeNMUPP(NMUPP userUPP);
void InvokeNMUPP(NMRecPtr nmReqPtr, NMUPP userUPP);

// Posts a request: shows it, then calls its response procedure on this thread, which may remove it.
// A request that is installed already is left alone. nmTypErr when its queue type is not nmType,
// paramErr for null.
OSErr NMInstall(NMRecPtr nmReqPtr);

// Takes a request out of the queue. nmTypErr when its queue type is not nmType, qErr when it is not
// installed, paramErr for null.
OSErr NMRemove(NMRecPtr nmReqPtr);

PLATFORM_DECLARATIONS_END

#endif
