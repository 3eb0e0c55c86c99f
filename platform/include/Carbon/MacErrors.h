// Result codes: signed 16-bit numbers (OSErr) or 32-bit ones (OSStatus); 0 is success. A call's own
// description says which of them it gives.
#ifndef CARBON_MACERRORS_H
#define CARBON_MACERRORS_H

// Queues.
enum { qErr = -1 };

// General and files.
enum {
    dirFulErr = -33,
    dskFulErr = -34,
    nsvErr = -35,
    ioErr = -36,
    bdNamErr = -37,
    fnOpnErr = -38,
    eofErr = -39,
    posErr = -40,
    mFulErr = -41,
    tmfoErr = -42,
    fnfErr = -43,
    wPrErr = -44,
    fLckdErr = -45,
    vLckdErr = -46,
    fBsyErr = -47,
    dupFNErr = -48,
    opWrErr = -49,
    paramErr = -50,
    rfNumErr = -51,
    gfpErr = -52,
    volOffLinErr = -53,
    permErr = -54,
    volOnLinErr = -55,
    nsDrvErr = -56,
    noMacDskErr = -57,
    extFSErr = -58,
    fsRnErr = -59,
    badMDBErr = -60,
    wrPermErr = -61,
    dataVerErr = -68,
    dirNFErr = -120,
    tmwdoErr = -121,
    badMovErr = -122,
    wrgVolTypErr = -123,
    volGoneErr = -124,
    userCanceledErr = -128
};

// Memory Manager.
enum {
    memFullErr = -108,
    nilHandleErr = -109,
    memAdrErr = -110,
    memWZErr = -111,
    memPurErr = -112,
    memAZErr = -113,
    memPCErr = -114,
    memBCErr = -115,
    memSCErr = -116,
    memLockedErr = -117
};

// Resource Manager.
enum {
    badExtResource = -185,
    CantDecompress = -186,
    resourceInMemory = -188,
    writingPastEnd = -189,
    inputOutOfBounds = -190,
    resNotFound = -192,
    resFNotFound = -193,
    addResFailed = -194,
    addRefFailed = -195,
    rmvResFailed = -196,
    rmvRefFailed = -197,
    resAttrErr = -198,
    mapReadErr = -199
};

// Notification Manager.
enum { nmTypErr = -299 };

// Process Manager.
enum {
    procNotFound = -600,
    memFragErr = -601,
    appModeErr = -602,
    protocolErr = -603,
    hardwareConfigErr = -604,
    appMemFullErr = -605,
    appIsDaemon = -606,
    bufferIsSmall = -607,
    noOutstandingHLE = -608,
    connectionInvalid = -609,
    noUserInteractionAllowed = -610,
    wrongApplicationPlatform = -875,
    appVersionTooOld = -876,
    notAppropriateForClassic = -877
};

// Sessions with other programs.
enum { noPortErr = -903, localOnlyErr = -905, destPortErr = -906, sessClosedErr = -917 };

// File IDs, catalog search, desktop database.
enum {
    fidNotFound = -1300,
    fidExists = -1301,
    notAFileErr = -1302,
    diffVolErr = -1303,
    catChangedErr = -1304,
    desktopDamagedErr = -1305,
    sameFileErr = -1306,
    badFidErr = -1307,
    notARemountErr = -1308,
    fileBoundsErr = -1309,
    fsDataTooBigErr = -1310,
    volVMBusyErr = -1311,
    badFCBErr = -1327
};

// File Manager, reference calls.
enum {
    errFSUnknownCall = -1400,
    errFSBadFSRef = -1401,
    errFSBadForkName = -1402,
    errFSBadBuffer = -1403,
    errFSBadForkRef = -1404,
    errFSBadInfoBitmap = -1405,
    errFSMissingCatInfo = -1406,
    errFSNotAFolder = -1407,
    errFSForkNotFound = -1409,
    errFSNameTooLong = -1410,
    errFSMissingName = -1411,
    errFSBadPosMode = -1412,
    errFSBadAllocFlags = -1413,
    errFSNoMoreItems = -1417,
    errFSBadItemCount = -1418,
    errFSBadSearchParams = -1419,
    errFSRefsDifferent = -1420,
    errFSForkExists = -1421,
    errFSBadIteratorFlags = -1422,
    errFSIteratorNotFound = -1423,
    errFSIteratorNotSupported = -1424,
    errFSQuotaExceeded = -1425,
    errFSOperationNotSupported = -1426,
    errFSAttributeNotFound = -1427,
    errFSPropertyNotValid = -1428,
    errFSNotEnoughSpaceForOperation = -1429
};

// Apple Event Manager.
enum {
    errAECoercionFail = -1700,
    errOSACantCoerce = -1700,
    OSAMissingParameter = -1701,
    errAEDescNotFound = -1701,
    errAECorruptData = -1702,
    errOSACorruptData = -1702,
    errAEWrongDataType = -1703,
    errOSATypeError = -1703,
    errAENotAEDesc = -1704,
    errAEBadListItem = -1705,
    errAENewerVersion = -1706,
    errAENotAppleEvent = -1707,
    OSAMessageNotUnderstood = -1708,
    errAEEventNotHandled = -1708,
    errAEReplyNotValid = -1709,
    errAEUnknownSendMode = -1710,
    errAEWaitCanceled = -1711,
    errAETimeout = -1712,
    errAENoUserInteraction = -1713,
    errAENotASpecialFunction = -1714,
    errAEParamMissed = -1715,
    errAEUnknownAddressType = -1716,
    OSAUndefinedHandler = -1717,
    errAEHandlerNotFound = -1717,
    errAEReplyNotArrived = -1718,
    OSAIllegalIndex = -1719,
    errAEIllegalIndex = -1719,
    OSAIllegalRange = -1720,
    errAEImpossibleRange = -1720,
    OSAParameterMismatch = -1721,
    errAEWrongNumberArgs = -1721,
    OSAIllegalAccess = -1723,
    errAEAccessorNotFound = -1723,
    errAENoSuchLogical = -1725,
    errAEBadTestKey = -1726,
    errAENotAnObjSpec = -1727,
    errAENoSuchObject = -1728,
    errOSACantAccess = -1728,
    errAENegativeCount = -1729,
    errAEEmptyListContainer = -1730,
    errAEUnknownObjectType = -1731,
    errAERecordingIsAlreadyOn = -1732,
    errOSARecordingIsAlreadyOn = -1732,
    errAEReceiveTerminate = -1733,
    errAEReceiveEscapeCurrent = -1734,
    errAEEventFiltered = -1735,
    errAEDuplicateHandler = -1736,
    errAEStreamBadNesting = -1737,
    errAEStreamAlreadyConverted = -1738,
    errAEDescIsNull = -1739,
    errAEBuildSyntaxError = -1740,
    errAEBufferTooSmall = -1741
};

// Paths.
enum { pathTooLongErr = -2110, emptyPathErr = -2111 };

// Code Fragment Manager.
enum {
    cfragContextIDErr = -2800,
    cfragFirstErrCode = -2800,
    cfragConnectionIDErr = -2801,
    cfragNoSymbolErr = -2802,
    cfragNoSectionErr = -2803,
    cfragNoLibraryErr = -2804,
    cfragDupRegistrationErr = -2805,
    cfragFragmentFormatErr = -2806,
    cfragUnresolvedErr = -2807,
    cfragNoPositionErr = -2808,
    cfragNoPrivateMemErr = -2809,
    cfragNoClientMemErr = -2810,
    cfragNoIDsErr = -2811,
    cfragInitOrderErr = -2812,
    cfragImportTooOldErr = -2813,
    cfragImportTooNewErr = -2814,
    cfragInitLoopErr = -2815,
    cfragInitAtBootErr = -2816,
    cfragLibConnErr = -2817,
    cfragCFMStartupErr = -2818,
    cfragCFMInternalErr = -2819,
    cfragFragmentCorruptErr = -2820,
    cfragInitFunctionErr = -2821,
    cfragNoApplicationErr = -2822,
    cfragArchitectureErr = -2823
};

// File servers.
enum {
    afpAccessDenied = -5000,
    afpAuthContinue = -5001,
    afpBadUAM = -5002,
    afpBadVersNum = -5003,
    afpBitmapErr = -5004,
    afpCantMove = -5005,
    afpDenyConflict = -5006,
    afpDirNotEmpty = -5007,
    afpDiskFull = -5008,
    afpEofError = -5009,
    afpFileBusy = -5010,
    afpFlatVol = -5011,
    afpItemNotFound = -5012,
    afpLockErr = -5013,
    afpMiscErr = -5014,
    afpNoMoreLocks = -5015,
    afpNoServer = -5016,
    afpObjectExists = -5017,
    afpObjectNotFound = -5018,
    afpParmErr = -5019,
    afpRangeNotLocked = -5020,
    afpRangeOverlap = -5021,
    afpSessClosed = -5022,
    afpUserNotAuth = -5023,
    afpCallNotSupported = -5024,
    afpObjectTypeErr = -5025,
    afpTooManyFilesOpen = -5026,
    afpServerGoingDown = -5027,
    afpCantRename = -5028,
    afpDirNotFound = -5029,
    afpIconTypeError = -5030,
    afpVolLocked = -5031,
    afpObjectLocked = -5032,
    afpContainsSharedErr = -5033,
    afpIDNotFound = -5034,
    afpIDExists = -5035,
    afpDiffVolErr = -5036,
    afpCatalogChanged = -5037,
    afpSameObjectErr = -5038,
    afpBadIDErr = -5039,
    afpPwdSameErr = -5040,
    afpPwdTooShortErr = -5041,
    afpPwdExpiredErr = -5042,
    afpInsideSharedErr = -5043,
    afpInsideTrashErr = -5044,
    afpPwdNeedsChangeErr = -5045,
    afpPwdPolicyErr = -5046,
    afpAlreadyLoggedInErr = -5047,
    afpCallNotAllowed = -5048,
    afpBadDirIDType = -5060,
    afpCantMountMoreSrvre = -5061,
    afpAlreadyMounted = -5062,
    afpSameNodeErr = -5063
};

// Gestalt.
enum {
    gestaltUnknownErr = -5550,
    gestaltUndefSelectorErr = -5551,
    gestaltDupSelectorErr = -5552,
    gestaltLocationErr = -5553
};

// Text encoding conversion.
enum {
    kTextUnsupportedEncodingErr = -8738,
    kTextMalformedInputErr = -8739,
    kTextUndefinedElementErr = -8740,
    kTECMissingTableErr = -8745,
    kTECTableChecksumErr = -8746,
    kTECTableFormatErr = -8747,
    kTECCorruptConverterErr = -8748,
    kTECNoConversionPathErr = -8749,
    kTECBufferBelowMinimumSizeErr = -8750,
    kTECArrayFullErr = -8751,
    kTECBadTextRunErr = -8752,
    kTECPartialCharErr = -8753,
    kTECUnmappableElementErr = -8754,
    kTECIncompleteElementErr = -8755,
    kTECDirectionErr = -8756,
    unicodeTextEncodingDataErr = -8757,
    unicodeContextualErr = -8758,
    unicodeDirectionErr = -8759,
    unicodeTableFormatErr = -8760,
    unicodeNotFoundErr = -8761,
    unicodeElementErr = -8762,
    unicodeCharErr = -8763,
    unicodeBufErr = -8764,
    unicodePartConvertErr = -8765,
    unicodeFallbacksErr = -8766,
    unicodeVariantErr = -8767,
    unicodeNoTableErr = -8768,
    unicodeChecksumErr = -8769,
    kTECGlobalsUnavailableErr = -8770,
    kTECItemUnavailableErr = -8771,
    kTECUsedFallbacksStatus = -8783,
    kTECNeedFlushStatus = -8784,
    kTECOutputBufferFullStatus = -8785
};

// Apple Event object model.
enum {
    errAEEventFailed = -10000,
    errAETypeError = -10001,
    errAEBadKeyForm = -10002,
    OSAIllegalAssign = -10003,
    errAENotModifiable = -10003,
    errAEPrivilegeError = -10004,
    errAEReadDenied = -10005,
    errAEWriteDenied = -10006,
    errOSACantAssign = -10006,
    errAEIndexTooLarge = -10007,
    errAENotAnElement = -10008,
    errAECantSupplyType = -10009,
    errAECantHandleClass = -10010,
    errAEInTransaction = -10011,
    errAENoSuchTransaction = -10012,
    errAENoUserSelection = -10013,
    errAENotASingleObject = -10014,
    errAECantUndo = -10015,
    errAELocalOnly = -10016,
    errAENotAnEnumMember = -10023,
    errAECantPutThatThere = -10024,
    errAEPropertiesClash = -10025
};

#endif
