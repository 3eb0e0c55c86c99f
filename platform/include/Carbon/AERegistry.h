// The common dictionary of the object model: codes of classes, events, keywords, properties and
// types that many applications share.
#ifndef CARBON_AEREGISTRY_H
#define CARBON_AEREGISTRY_H

#include <Carbon/AEDataModel.h>

// Classes of objects.
enum {
    cAEList = 'list',
    cApplication = 'capp',
    cArc = 'carc',
    cBoolean = 'bool',
    cCell = 'ccel',
    cChar = 'cha ',
    cDocument = 'docu',
    cEnumeration = 'enum',
    cFile = 'file',
    cFixed = 'fixd',
    cInsertionLoc = 'insl',
    cInsertionPoint = 'cins',
    cIntlText = 'itxt',
    cItem = 'citm',
    cLine = 'clin',
    cLongDateTime = 'ldt ',
    cLongInteger = 'long',
    cMenu = 'cmnu',
    cMenuItem = 'cmen',
    cObject = 'cobj',
    cObjectSpecifier = 'obj ',
    cParagraph = 'cpar',
    cProperty = 'prop',
    cQDPoint = 'QDpt',
    cQDRectangle = 'qdrt',
    cRGBColor = 'cRGB',
    cRectangle = 'crec',
    cRow = 'crow',
    cSelection = 'csel',
    cShortInteger = 'shor',
    cTable = 'ctbl',
    cText = 'ctxt',
    cType = 'type',
    cURL = 'url ',
    cVersion = 'vers',
    cWindow = 'cwin',
    cWord = 'cwor'
};

// Enumerations.
enum {
    enumSaveOptions = 'savo',
    enumKeyForm = 'kfrm',
    enumPosition = 'posi',
    enumProtection = 'prtn',
    enumStyle = 'styl',
    enumQuality = 'qual'
};

// Insertion positions.
enum {
    kAEBeginning = 'bgng',
    kAEEnd = 'end ',
    kAEBefore = 'befo',
    kAEAfter = 'afte',
    kAEReplace = 'rplc'
};

// Answers about saving.
enum { kAEYes = 'yes ', kAENo = 'no  ', kAEAsk = 'ask ' };

// Comparison operators.
enum {
    kAEEquals = '=   ',
    kAEGreaterThan = '>   ',
    kAEGreaterThanEquals = '>=  ',
    kAELessThan = '<   ',
    kAELessThanEquals = '<=  ',
    kAEBeginsWith = 'bgwt',
    kAEEndsWith = 'ends',
    kAEContains = 'cont',
    kAECaseSensEquals = 'cseq',
    kAEWholeWordEquals = 'wweq'
};

// Event classes.
enum {
    kAERequiredSuite = 'reqd',
    kAECoreSuite = 'core',
    kAETextSuite = 'TEXT',
    kAEMiscStandards = 'misc',
    kAEFinderEvents = 'FNDR'
};

// Event IDs of the core suite and the standard ones.
enum {
    kAEClone = 'clon',
    kAEClose = 'clos',
    kAECopy = 'copy',
    kAECountElements = 'cnte',
    kAECreateElement = 'crel',
    kAECut = 'cut ',
    kAEDelete = 'delo',
    kAEDoObjectsExist = 'doex',
    kAEDoScript = 'dosc',
    kAEGetClassInfo = 'qobj',
    kAEGetData = 'getd',
    kAEGetDataSize = 'dsiz',
    kAEGetEventInfo = 'gtei',
    kAEGetSuiteInfo = 'gtsi',
    kAEMove = 'move',
    kAEOpen = 'odoc',
    kAEPaste = 'past',
    kAEPrint = 'pdoc',
    kAEPrintWindow = 'pwin',
    kAEQuitAll = 'quia',
    kAERedo = 'redo',
    kAEReopenApplication = 'rapp',
    kAERevert = 'rvrt',
    kAESave = 'save',
    kAESelect = 'slct',
    kAESetData = 'setd',
    kAEUndo = 'undo',
    kAEBeginTransaction = 'begi',
    kAEEndTransaction = 'endt',
    kAETransactionTerminated = 'ttrm',
    kAERestart = 'rest',
    kAEShutDown = 'shut',
    kAESleep = 'slep',
    kAELogOut = 'logo'
};

// Keywords of parameters.
enum {
    keyAEResult = '----',
    keyAEData = 'data',
    keyAEDefaultType = 'deft',
    keyAEDescType = 'dstp',
    keyAEDestination = 'dest',
    keyAEEventClass = 'evcl',
    keyAEEventID = 'evti',
    keyAEFile = 'kfil',
    keyAEFileType = 'fltp',
    keyAEID = 'ID  ',
    keyAEInsertHere = 'insh',
    keyAEKeyForms = 'keyf',
    keyAEKeyword = 'kywd',
    keyAEName = 'pnam',
    keyAEObject = 'kobj',
    keyAEObjectClass = 'kocl',
    keyAEPosition = 'kpos',
    keyAEPropData = 'prdt',
    keyAEProperties = 'qpro',
    keyAEProperty = 'kprp',
    keyAERequestedType = 'rtyp',
    keyAEResultInfo = 'rsin',
    keyAESaveOptions = 'savo',
    keyAESuiteID = 'suit',
    keyAEText = 'ktxt',
    keyAETheData = 'kdat',
    keyAEUserTerm = 'utrm',
    keyAEWindow = 'wndw',
    keyAELaunchedAsLogInItem = 'lgit',
    keyAELaunchedAsServiceItem = 'svit'
};

// Properties.
enum {
    pBestType = 'pbst',
    pBounds = 'pbnd',
    pClass = 'pcls',
    pClipboard = 'pcli',
    pColor = 'colr',
    pContents = 'pcnt',
    pDefaultType = 'deft',
    pEnabled = 'enbl',
    pFont = 'font',
    pID = 'ID  ',
    pIndex = 'pidx',
    pInsertionLoc = 'pins',
    pIsFrontProcess = 'pisf',
    pIsModified = 'imod',
    pItemNumber = 'itmn',
    pName = 'pnam',
    pNewElementLoc = 'pnel',
    pPath = 'FTPc',
    pScript = 'scpt',
    pSelected = 'selc',
    pSelection = 'sele',
    pURL = 'pURL',
    pUserSelection = 'pusl',
    pVersion = 'vers',
    pVisible = 'pvis'
};

// Types of data.
enum {
    typeAEText = 'tTXT',
    typeBest = 'best',
    typeData = 'tdta',
    typeEventInfo = 'evin',
    typeInsertionLoc = 'insl',
    typeIntlText = 'itxt',
    typeIntlWritingCode = 'intl',
    typeISO8601DateTime = 'isot',
    typeLongDateTime = 'ldt ',
    typeLongPoint = 'lpnt',
    typeLongRectangle = 'lrct',
    typeMachineLoc = 'mLoc',
    typePict = 'PICT',
    typeQDPoint = 'QDpt',
    typeQDRegion = 'Qrgn',
    typeRGBColor = 'cRGB',
    typeRectangle = 'crec',
    typeScript = 'scpt',
    typeStyledText = 'STXT',
    typeScrapStyles = 'styl',
    typeText = 'TEXT',
    typeTextStyles = 'tsty',
    typeVersion = 'vers'
};

#endif
