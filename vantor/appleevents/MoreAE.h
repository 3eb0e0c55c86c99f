// Addresses, events, sending and replies for callers that want result codes. Usable from C.
//
// Nothing here throws. Results are those of the Apple Event Manager, of the handler that answered,
// or -50 and -1700 where a function says so. Descriptors given out are the caller's to dispose.
// Whether a send waits is decided by its idle function: with none the event is handed over and
// forgotten; with one the call waits without limit while the idle function runs.
#pragma once

#include <Carbon/Carbon.h>

#include "vantor/foundation/Export.h"

VANTOR_BEGIN_C

// A 'psn ' address. A null number gives the address of {2, 0}, which names no process.
VANTOR_EXPORT OSErr MoreAECreateProcessTarget(ProcessSerialNumber* pPSN, AEAddressDesc* pTarget);

// Events to one process (null: the own), to the own, to the first with a creator and file type
// (-600 when there is none), to the first with a creator (looked up when the event is sent).
VANTOR_EXPORT OSErr MoreAECreateAppleEventProcessTarget(const ProcessSerialNumber* pPSN,
                                                        AEEventClass pClass, AEEventID pID,
                                                        AppleEvent* pAppleEvent);
VANTOR_EXPORT OSErr MoreAECreateAppleEventSelfTarget(AEEventClass pClass, AEEventID pID,
                                                     AppleEvent* pAppleEvent);
VANTOR_EXPORT OSErr MoreAECreateAppleEventSignatureTarget(OSType pCreator, OSType pType,
                                                          AEEventClass pClass, AEEventID pID,
                                                          AppleEvent* pAppleEvent);
VANTOR_EXPORT OSErr MoreAECreateAppleEventCreatorTarget(AEEventClass pClass, AEEventID pID,
                                                        OSType pCreator, AppleEvent* pAppleEvent);

// Sends; with an idle function, waits and returns the error number the answer carries.
VANTOR_EXPORT OSErr MoreAESendEventNoReturnValue(AEIdleUPP pIdleUPP, const AppleEvent* pAppleEvent);

// Sends, waits and reads the direct object of the answer. -50 without an idle function.
//   pActualType, pActualSize  what the direct object is as `pDesiredType`; the size is the full
//                             one, also when only `pMaximumSize` bytes fit. Either may be null.
//   pDataPtr                  the bytes as they are, big-endian
// When no answer came back at all the result is 0 and nothing is written.
VANTOR_EXPORT OSErr MoreAESendEventReturnData(AEIdleUPP pIdleUPP, const AppleEvent* pAppleEvent,
                                              DescType pDesiredType, DescType* pActualType,
                                              void* pDataPtr, Size pMaximumSize, Size* pActualSize);
VANTOR_EXPORT OSErr MoreAESendEventReturnSInt16(AEIdleUPP pIdleUPP, const AppleEvent* pAppleEvent,
                                                SInt16* pValue);
VANTOR_EXPORT OSErr MoreAESendEventReturnPString(AEIdleUPP pIdleUPP, const AppleEvent* pAppleEvent,
                                                 Str255 pValue);

// The error number in an answer, 0 when there is none.
VANTOR_EXPORT OSErr MoreAEGetHandlerError(const AppleEvent* pAEReply);

// An idle function: sleeps 30 ticks (half a second) at a time and never stops the wait.
VANTOR_EXPORT Boolean MoreAESimpleIdleFunction(EventRecord* pEvent, SInt32* pSleepTime,
                                               RgnHandle* pMouseRgn);

// Events to the own process, answered before the call returns.
VANTOR_EXPORT OSErr MoreAESendToSelfNoReturnValue(AEEventClass pClass, AEEventID pID);
VANTOR_EXPORT OSErr MoreAESendToSelfReturnSInt16(AEEventClass pClass, AEEventID pID,
                                                 SInt16* pValue);
VANTOR_EXPORT OSErr MoreAETellSelfToGetSInt16Property(DescType pProperty, SInt16* pValue);
VANTOR_EXPORT OSErr MoreAETellSelfToGetStr255Property(DescType pProperty, Str255 pValue);
VANTOR_EXPORT OSErr MoreAETellSelfToSetSInt16Property(DescType pProperty, SInt16 pValue);
VANTOR_EXPORT OSErr MoreAETellSelfToSetStr255Property(DescType pProperty, ConstStr255Param pValue);

// To the null descriptor, without and with disposing what was there.
VANTOR_EXPORT void MoreAENullDesc(AEDesc* pDesc);
VANTOR_EXPORT void MoreAEDisposeDesc(AEDesc* pDesc);

// Up to `pMaxSize` bytes as they are; `pActualSize` gets the full size.
VANTOR_EXPORT void MoreAEGetRawDataFromDescriptor(const AEDesc* pDesc, Ptr pBuffer, Size pMaxSize,
                                                  Size* pActualSize);

// Values, coerced if need be. -1700 when there is more data than the value holds.
VANTOR_EXPORT OSErr MoreAEGetPStringFromDescriptor(const AEDesc* pDesc, StringPtr pString);
// Copies 256 characters at most and ends the string where the whole text would end: the buffer must
// hold all of the text and a zero.
VANTOR_EXPORT OSErr MoreAEGetCStringFromDescriptor(const AEDesc* pDesc, char* pString);
VANTOR_EXPORT OSErr MoreAEGetShortFromDescriptor(const AEDesc* pDesc, SInt16* pValue);
VANTOR_EXPORT OSErr MoreAEGetBooleanFromDescriptor(const AEDesc* pDesc, Boolean* pValue);
VANTOR_EXPORT OSErr MoreAEGetLongFromDescriptor(const AEDesc* pDesc, SInt32* pValue);
VANTOR_EXPORT OSErr MoreAEGetOSTypeFromDescriptor(const AEDesc* pDesc, OSType* pValue);

// The bytes in a new handle, the caller's. `*pDescData` is null before.
VANTOR_EXPORT OSErr MoreAECopyDescriptorDataToHandle(const AEDesc* pDesc, Handle* pDescData);

// --- For handlers of events ---

// 0 when every required parameter of the event has been read, errAEParamMissed when not.
VANTOR_EXPORT OSErr MoreAEGotRequiredParams(const AppleEvent* pAppleEvent);

// Puts an error number into the reply; 0 is put too. A reply that nobody wants is left alone.
VANTOR_EXPORT OSErr MoreAEMoreAESetReplyErrorNumber(OSErr pError, AppleEvent* pAEReply);

// Puts the result of an event into its reply: as the direct object when `pError` is 0, else as the
// error's text ('TEXT') or number ('long'); a result of another type is then errAETypeError.
// Returns `pError` when nothing went wrong here.
VANTOR_EXPORT OSErr MoreAEAddResultToReply(const AEDesc* pResult, AppleEvent* pAEReply,
                                           OSErr pError);

VANTOR_EXPORT OSErr MoreAEExtractClassAndID(const AppleEvent* pAppleEvent,
                                            AEEventClass* pEventClass, AEEventID* pEventID);

// Whether the sender's creator is 'MACS' and its file type 'FNDR'.
VANTOR_EXPORT OSErr MoreAEIsSenderFinder(const AppleEvent* pAppleEvent, Boolean* pIsFinder);

// Appends a copy of each item.
VANTOR_EXPORT OSErr MoreAEAppendListToList(const AEDescList* pSourceList, AEDescList* pDestList);

// Whether there are Apple Events at all. Asked once; true as long as there is no answer.
VANTOR_EXPORT Boolean MoreAEHasAppleEvents(void);

// The value that stands for none: the 'type' 'msng'.
VANTOR_EXPORT Boolean MoreAEIsMissingValue(const AEDesc* pDesc);
VANTOR_EXPORT OSErr MoreAECreateMissingValue(AEDesc* pDesc);

VANTOR_END_C
