// Descriptors, lists, records and events: the data that Apple events are made of.
//
// Bytes in a descriptor are big-endian, whatever the machine; the typed calls that take or give a
// number as an argument convert, the calls that take a pointer and a size hand bytes through.
// Everything put into a descriptor is copied; everything got out is a copy that the caller owns and
// disposes. A descriptor that a call fills is created fresh: what it held before is not disposed,
// and after a failure it is the null descriptor. Indexes of lists and records start at 1.
//
// Common results: paramErr for a null pointer where one is needed, a negative size or a null
// pointer with a size; memFullErr; errAENotAEDesc when a call that needs a list, a record or an
// event gets something else; errAECoercionFail when no coercion leads to the desired type.
#ifndef CARBON_AEDATAMODEL_H
#define CARBON_AEDATAMODEL_H

#include <Carbon/MacTypes.h>

typedef ResType DescType;
typedef FourCharCode AEKeyword;
typedef FourCharCode AEEventClass;
typedef FourCharCode AEEventID;
typedef SInt8 AEArrayType;
typedef SInt16 AEReturnID;
typedef SInt32 AETransactionID;
typedef SInt32 AESendMode;
typedef SInt16 AESendPriority;

// What a descriptor's data is. The comment gives its bytes.
enum {
    typeBoolean = 'bool',                      // 1: 0 or 1
    typeChar = 'TEXT',                         // MacRoman, no terminator
    typeUnicodeText = 'utxt',                  // UTF-16, big-endian
    typeUTF16ExternalRepresentation = 'ut16',  // UTF-16, big-endian or with a byte order mark
    typeUTF8Text = 'utf8',
    typeEncodedString = 'encs',
    typeCString = 'cstr',  // MacRoman and a zero byte
    typePString = 'pstr',  // a length byte and MacRoman
    typeSInt16 = 'shor',
    typeSInt32 = 'long',
    typeUInt32 = 'magn',
    typeSInt64 = 'comp',
    typeIEEE32BitFloatingPoint = 'sing',
    typeIEEE64BitFloatingPoint = 'doub',
    type128BitFloatingPoint = 'ldbl',
    typeExtended = 'exte',  // 10: sign and exponent, 64 bits of significand
    typeDecimalStruct = 'decm',
    typeSMInt = typeSInt16,
    typeShortInteger = typeSInt16,
    typeInteger = typeSInt32,
    typeLongInteger = typeSInt32,
    typeMagnitude = typeUInt32,
    typeComp = typeSInt64,
    typeSMFloat = typeIEEE32BitFloatingPoint,
    typeShortFloat = typeIEEE32BitFloatingPoint,
    typeFloat = typeIEEE64BitFloatingPoint,
    typeLongFloat = typeIEEE64BitFloatingPoint
};
enum {
    typeAEList = 'list',
    typeAERecord = 'reco',
    typeAppleEvent = 'aevt',
    typeEventRecord = 'evrc',    // 16: an EventRecord
    typeTrue = 'true',           // no data
    typeFalse = 'fals',          // no data
    typeAlias = 'alis',          // an alias record
    typeFSS = 'fss ',            // 70: volume 2, folder 4, name 64
    typeFSRef = 'fsrf',          // 80
    typeFileURL = 'furl',        // a file URL in UTF-8
    typeEnumerated = 'enum',     // 4
    typeType = 'type',           // 4
    typeAppParameters = 'appa',  // launch parameters: 24 bytes and a flattened event
    typeProperty = 'prop',       // 4
    typeKeyword = 'keyw',        // 4
    typeSectionH = 'sect',
    typeFixed = 'fixd',        // 4: 16.16
    typeQDRectangle = 'qdrt',  // 8: a Rect
    typeWildCard = '****',     // in requests: any type
    typeNull = 'null'          // nothing
};
// Addresses of events.
enum {
    typeApplSignature = 'sign',        // 4: the creator code
    typeProcessSerialNumber = 'psn ',  // 8: high word, low word
    typeKernelProcessID = 'kpid',      // 4: process id
    typeApplicationBundleID = 'bund',  // the bundle identifier in UTF-8
    typeApplicationURL = 'aprl',       // URL in UTF-8
    typeMachPort = 'port'
};

// Attributes of an event; their names are apart from those of its parameters.
enum {
    keyTransactionIDAttr = 'tran',    // 'long'
    keyReturnIDAttr = 'rtid',         // 'shor'
    keyEventClassAttr = 'evcl',       // 'type'
    keyEventIDAttr = 'evid',          // 'type'
    keyAddressAttr = 'addr',          // the receiver; for a handler: the sender, as 'psn '
    keyOptionalKeywordAttr = 'optk',  // list of 'keyw': parameters the receiver may ignore
    keyTimeoutAttr = 'timo',          // 'long', ticks
    keyInteractLevelAttr = 'inte',    // 'long', read only: kAENeverInteract and its kin
    keyEventSourceAttr = 'esrc',      // 'shor', read only: see AppleEvents.h
    keyMissedKeywordAttr = 'miss',  // 'keyw', read only: the first required parameter not yet read
    keyOriginalAddressAttr = 'from',  // an address
    keyAcceptTimeoutAttr = 'actm',    // 'long', ticks
    keyReplyRequestedAttr = 'repq'    // 'bool', read only
};

// How AECreateList may be told what all items have in common.
enum { kAEDescListFactorNone = 0, kAEDescListFactorType = 4, kAEDescListFactorTypeAndSize = 8 };

enum { kAutoGenerateReturnID = -1, kAnyTransactionID = 0 };

enum {
    kAEDataArray = 0,    // items of one size and type, each beginning at an even offset
    kAEPackedArray = 1,  // items of one size and type, without gaps
    kAEDescArray = 3,    // AEDesc
    kAEKeyDescArray = 4  // AEKeyDesc, for records
};
enum { kAEHandleArray = 2 };  // handles to the items' data, which are of one type

// Bits of an AESendMode; the lowest two are one field: kAENoReply, kAEQueueReply or kAEWaitReply.
enum {
    kAENoReply = 0x00000001,
    kAEQueueReply = 0x00000002,
    kAEWaitReply = 0x00000003,
    kAEDontReconnect = 0x00000080,
    kAEWantReceipt = 0x00000200,
    kAENeverInteract = 0x00000010,
    kAECanInteract = 0x00000020,
    kAEAlwaysInteract = 0x00000030,
    kAECanSwitchLayer = 0x00000040,
    kAEDontRecord = 0x00001000,
    kAEDontExecute = 0x00002000,
    kAEProcessNonReplyEvents = 0x00008000
};
enum { kAENormalPriority = 0x00000000, kAEHighPriority = 0x00000001 };
enum { kAEDefaultTimeout = -1, kNoTimeOut = -2 };  // instead of ticks

typedef struct OpaqueAEDataStorageType* AEDataStorageType;
typedef AEDataStorageType* AEDataStorage;  // may be compared with NULL, nothing else

#pragma pack(push, 2)

struct AEDesc {
    DescType descriptorType;
    AEDataStorage dataHandle;
};
typedef struct AEDesc AEDesc;
typedef AEDesc* AEDescPtr;

struct AEKeyDesc {
    AEKeyword descKey;
    AEDesc descContent;
};
typedef struct AEKeyDesc AEKeyDesc;

typedef AEDesc AEAddressDesc;
typedef AEDesc AEDescList;
typedef AEDescList AERecord;
typedef AERecord AppleEvent;
typedef AppleEvent* AppleEventPtr;

union AEArrayData {
    SInt16 kAEDataArray[1];
    char kAEPackedArray[1];
    Handle kAEHandleArray[1];
    AEDesc kAEDescArray[1];
    AEKeyDesc kAEKeyDescArray[1];
};
typedef union AEArrayData AEArrayData;
typedef AEArrayData* AEArrayDataPointer;

#pragma pack(pop)

// Coercion handlers make `result` from a descriptor or from bytes. errAECoercionFail lets the next
// one try; any other result but noErr ends the coercion with that result.
typedef OSErr (*AECoerceDescProcPtr)(const AEDesc* fromDesc, DescType toType, SInt32 handlerRefcon,
                                     AEDesc* toDesc);
typedef OSErr (*AECoercePtrProcPtr)(DescType typeCode, const void* dataPtr, Size dataSize,
                                    DescType toType, SInt32 handlerRefcon, AEDesc* result);
// Tells the lender of bytes that they are no longer needed.
typedef void (*AEDisposeExternalProcPtr)(const void* dataPtr, Size dataLength, SInt32 refcon);
// Handles an event; `reply` is the null descriptor when nobody waits for an answer.
typedef OSErr (*AEEventHandlerProcPtr)(const AppleEvent* theAppleEvent, AppleEvent* reply,
                                       SInt32 handlerRefcon);

typedef AECoerceDescProcPtr AECoerceDescUPP;
typedef AECoercePtrProcPtr AECoercePtrUPP;
typedef AEDisposeExternalProcPtr AEDisposeExternalUPP;
typedef AEEventHandlerProcPtr AEEventHandlerUPP;
typedef AECoerceDescUPP AECoercionHandlerUPP;  // an AECoercePtrUPP is cast to this

PLATFORM_DECLARATIONS_BEGIN

// Procedure pointers are plain pointers here: New gives the procedure back, Dispose does nothing,
// whatever it gets, Invoke calls.
AECoerceDescUPP NewAECoerceDescUPP(AECoerceDescProcPtr userRoutine);
AECoercePtrUPP NewAECoercePtrUPP(AECoercePtrProcPtr userRoutine);
AEDisposeExternalUPP NewAEDisposeExternalUPP(AEDisposeExternalProcPtr userRoutine);
AEEventHandlerUPP NewAEEventHandlerUPP(AEEventHandlerProcPtr userRoutine);
void DisposeAECoerceDescUPP(AECoerceDescUPP userUPP);
void DisposeAECoercePtrUPP(AECoercePtrUPP userUPP);
void DisposeAEDisposeExternalUPP(AEDisposeExternalUPP userUPP);
void DisposeAEEventHandlerUPP(AEEventHandlerUPP userUPP);
OSErr InvokeAECoerceDescUPP(const AEDesc* fromDesc, DescType toType, SInt32 handlerRefcon,
                            AEDesc* toDesc, AECoerceDescUPP userUPP);
OSErr InvokeAECoercePtrUPP(DescType typeCode, const void* dataPtr, Size dataSize, DescType toType,
                           SInt32 handlerRefcon, AEDesc* result, AECoercePtrUPP userUPP);
void InvokeAEDisposeExternalUPP(const void* dataPtr, Size dataLength, SInt32 refcon,
                                AEDisposeExternalUPP userUPP);
OSErr InvokeAEEventHandlerUPP(const AppleEvent* theAppleEvent, AppleEvent* reply,
                              SInt32 handlerRefcon, AEEventHandlerUPP userUPP);

// Coercion handlers. A handler for the exact pair of types goes before one with typeWildCard on a
// side, the application's table (isSysHandler false) before the system's, and every handler before
// the coercions that are built in. Tables belong to the calling process.
//   fromTypeIsDesc  whether the handler is an AECoerceDescUPP; otherwise it is an AECoercePtrUPP
// Installing replaces the entry of the same pair. Removing and getting answer errAEHandlerNotFound
// when there is no entry, or when a handler other than null is named that is not the one installed.
OSErr AEInstallCoercionHandler(DescType fromType, DescType toType, AECoercionHandlerUPP handler,
                               SInt32 handlerRefcon, Boolean fromTypeIsDesc, Boolean isSysHandler);
OSErr AERemoveCoercionHandler(DescType fromType, DescType toType, AECoercionHandlerUPP handler,
                              Boolean isSysHandler);
OSErr AEGetCoercionHandler(DescType fromType, DescType toType, AECoercionHandlerUPP* handler,
                           SInt32* handlerRefcon, Boolean* fromTypeIsDesc, Boolean isSysHandler);

// Coercion. The same type, or typeWildCard, gives a copy and calls no handler.
OSErr AECoercePtr(DescType typeCode, const void* dataPtr, Size dataSize, DescType toType,
                  AEDesc* result);
OSErr AECoerceDesc(const AEDesc* theAEDesc, DescType toType, AEDesc* result);

// Descriptors. The null descriptor has type typeNull and a null handle; every other descriptor has
// a handle that is not null, even with no data.
void AEInitializeDesc(AEDesc* desc);
OSErr AECreateDesc(DescType typeCode, const void* dataPtr, Size dataSize, AEDesc* result);
// noErr whatever it held; leaves the null descriptor.
OSErr AEDisposeDesc(AEDesc* theAEDesc);
OSErr AEDuplicateDesc(const AEDesc* theAEDesc, AEDesc* result);
// Borrows the bytes until `disposeCallback` (may be null) is called, which may be at any time.
OSStatus AECreateDescFromExternalPtr(DescType descriptorType, const void* dataPtr, Size dataLength,
                                     AEDisposeExternalUPP disposeCallback, SInt32 disposeRefcon,
                                     AEDesc* theDesc);

// Lists and records. Items are handed over as copies.
//   factoringPtr, factoredSize  null and 0; or the type (4 bytes), the type and the size of the
//   data
//                               (8, as two native 32-bit numbers), or these and the bytes that all
//                               items begin with: the list then refuses other items with
//                               errAEWrongDataType. Records cannot be factored: paramErr
OSErr AECreateList(const void* factoringPtr, Size factoredSize, Boolean isRecord,
                   AEDescList* resultList);
// Also of records and of the parameters of events.
OSErr AECountItems(const AEDescList* theAEDescList, SInt32* theCount);
// An index of 0 or one past the last appends, a smaller one replaces; others: errAEIllegalIndex.
// errAEWrongDataType for a record, whose items need keywords. paramErr when the result would be
// nested more than 32 deep.
OSErr AEPutPtr(AEDescList* theAEDescList, SInt32 index, DescType typeCode, const void* dataPtr,
               Size dataSize);
OSErr AEPutDesc(AEDescList* theAEDescList, SInt32 index, const AEDesc* theAEDesc);
// Records and events too, in order of insertion. The keyword is typeWildCard for items of lists.
// Keyword, type and size may be null. `actualSize` is the whole size, whatever fitted into the
// buffer of `maximumSize` bytes. errAEDescNotFound for an index without an item.
OSErr AEGetNthPtr(const AEDescList* theAEDescList, SInt32 index, DescType desiredType,
                  AEKeyword* theAEKeyword, DescType* typeCode, void* dataPtr, Size maximumSize,
                  Size* actualSize);
OSErr AEGetNthDesc(const AEDescList* theAEDescList, SInt32 index, DescType desiredType,
                   AEKeyword* theAEKeyword, AEDesc* result);
OSErr AESizeOfNthItem(const AEDescList* theAEDescList, SInt32 index, DescType* typeCode,
                      Size* dataSize);
// Gives the items that fit wholly into `maximumSize` bytes, and their number. Data and packed
// arrays want items of one type and size, handle arrays of one type; otherwise errAEWrongDataType.
// Descriptors and handles are new, the caller disposes them.
OSErr AEGetArray(const AEDescList* theAEDescList, AEArrayType arrayType,
                 AEArrayDataPointer arrayPtr, Size maximumSize, DescType* itemType, Size* itemSize,
                 SInt32* itemCount);
// Replaces all items. Type and size are not looked at for descriptors; key descriptors go into
// records only, everything else into lists only (errAEWrongDataType).
OSErr AEPutArray(AEDescList* theAEDescList, AEArrayType arrayType, const AEArrayData* arrayPtr,
                 DescType itemType, Size itemSize, SInt32 itemCount);
// Later items move down. errAEBadListItem for an index without an item.
OSErr AEDeleteItem(AEDescList* theAEDescList, SInt32 index);

// Whether it holds keyed items: a record, whatever its type, or an event.
Boolean AECheckIsRecord(const AEDesc* theDesc);

// Events. A new one has the attributes 'evcl', 'evid', 'addr', 'rtid' and 'tran', no parameters.
//   target         copied, not examined; null for none
//   returnID       kAutoGenerateReturnID for one that no other event of this session has
OSErr AECreateAppleEvent(AEEventClass theAEEventClass, AEEventID theAEEventID,
                         const AEAddressDesc* target, AEReturnID returnID,
                         AETransactionID transactionID, AppleEvent* result);

// Parameters of events and items of records, by keyword, in order of insertion. Putting replaces an
// item of the same keyword in its place. errAEDescNotFound when there is none.
OSErr AEPutParamPtr(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType typeCode,
                    const void* dataPtr, Size dataSize);
OSErr AEPutParamDesc(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, const AEDesc* theAEDesc);
// `desiredType` typeWildCard takes it as it is. `actualType` is the type after the coercion,
// `actualSize` the whole size even when only `maximumSize` bytes were copied; both may be null.
OSErr AEGetParamPtr(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                    DescType* actualType, void* dataPtr, Size maximumSize, Size* actualSize);
OSErr AEGetParamDesc(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType desiredType,
                     AEDesc* result);
OSErr AESizeOfParam(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType* typeCode,
                    Size* dataSize);
OSErr AEDeleteParam(AppleEvent* theAppleEvent, AEKeyword theAEKeyword);

// Attributes of events. What is put is coerced to the attribute's own type, an address is taken as
// it is; a read-only attribute is refused with paramErr.
OSErr AEGetAttributePtr(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword,
                        DescType desiredType, DescType* typeCode, void* dataPtr, Size maximumSize,
                        Size* actualSize);
OSErr AEGetAttributeDesc(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword,
                         DescType desiredType, AEDesc* result);
OSErr AESizeOfAttribute(const AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType* typeCode,
                        Size* dataSize);
OSErr AEPutAttributePtr(AppleEvent* theAppleEvent, AEKeyword theAEKeyword, DescType typeCode,
                        const void* dataPtr, Size dataSize);
OSErr AEPutAttributeDesc(AppleEvent* theAppleEvent, AEKeyword theAEKeyword,
                         const AEDesc* theAEDesc);

// The flattened form: one block of bytes, the same on every machine, also for whole events.
// 0 for a null pointer.
Size AESizeOfFlattenedDesc(const AEDesc* theAEDesc);
// `actualSize` (may be null) is the size of the form. A null buffer is a question for it alone; one
// that is too small gets errAEBufferTooSmall and no byte.
OSStatus AEFlattenDesc(const AEDesc* theAEDesc, Ptr buffer, Size bufferSize, Size* actualSize);
// paramErr for bytes that are no flattened form. The buffer is as long as its own header says.
OSStatus AEUnflattenDesc(const void* buffer, AEDesc* result);

// The data of a descriptor; for lists, records and events the bytes of their items, without header.
// Copies what fits into `maximumSize` bytes; data that is larger is no error.
OSErr AEGetDescData(const AEDesc* theAEDesc, void* dataPtr, Size maximumSize);
Size AEGetDescDataSize(const AEDesc* theAEDesc);
OSErr AEReplaceDescData(DescType typeCode, const void* dataPtr, Size dataSize, AEDesc* theAEDesc);
// errAEBufferTooSmall when the range is not inside the data.
OSStatus AEGetDescDataRange(const AEDesc* dataDesc, void* buffer, Size offset, Size length);

PLATFORM_DECLARATIONS_END

// Records and events are alike to these.
#define AEPutKeyPtr(theRecord, theAEKeyword, typeCode, dataPtr, dataSize) \
    AEPutParamPtr((theRecord), (theAEKeyword), (typeCode), (dataPtr), (dataSize))
#define AEPutKeyDesc(theRecord, theAEKeyword, theAEDesc) \
    AEPutParamDesc((theRecord), (theAEKeyword), (theAEDesc))
#define AEGetKeyPtr(theRecord, theAEKeyword, desiredType, typeCode, dataPtr, maxSize, actualSize) \
    AEGetParamPtr((theRecord), (theAEKeyword), (desiredType), (typeCode), (dataPtr), (maxSize),   \
                  (actualSize))
#define AEGetKeyDesc(theRecord, theAEKeyword, desiredType, result) \
    AEGetParamDesc((theRecord), (theAEKeyword), (desiredType), (result))
#define AESizeOfKeyDesc(theRecord, theAEKeyword, typeCode, dataSize) \
    AESizeOfParam((theRecord), (theAEKeyword), (typeCode), (dataSize))
#define AEDeleteKeyDesc(theRecord, theAEKeyword) AEDeleteParam((theRecord), (theAEKeyword))

#endif
