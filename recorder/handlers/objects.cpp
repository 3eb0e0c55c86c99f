// Owns the accessors: one step each from a container to what lies in it.
#include "handlers/objects.h"

#include "burn/BurnFailure.h"
#include "disc/RecorderState.h"
#include "handlers/Values.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

RecorderState* sState = nullptr;

// A token is 'Disc' without data, 'Driv' with the identifier, or 'prop' with the code, the class of
// its object and that object's data.
OSErr MakeToken(DescType inType, const std::string& inData, AEDesc* outToken) {
    return AECreateDesc(inType, inData.data(), Size(inData.size()), outToken);
}

std::string CodeBytes(OSType inCode) {
    const UInt32 code = EndianU32_NtoB(inCode);
    return {reinterpret_cast<const char*>(&code), sizeof code};
}

OSType CodeAt(const std::string& inBytes, size_t inAt) {
    OSType code = 0;
    for (size_t i = 0; i < sizeof code; ++i) code = code << 8 | UInt8(inBytes[inAt + i]);
    return code;
}

// The position that key data names; 0 for one that is none.
SInt32 PositionFrom(const AEDesc& inData) {
    if (inData.descriptorType != typeAbsoluteOrdinal) {
        StAEDescriptor number;
        return AECoerceDesc(&inData, typeSInt32, number) == noErr ? SInt32(CodeFrom(number)) : 0;
    }
    const OSType ordinal = CodeFrom(inData);
    return ordinal == OSType(kAEFirst) ? 1 : ordinal == OSType(kAELast) ? -1 : 0;
}

OSErr FindDisc(DescType inForm, const AEDesc& inData, AEDesc* outToken) {
    if (inForm != DescType(formAbsolutePosition)) return errAEBadKeyForm;
    const SInt32 position = PositionFrom(inData);
    return position == 1 || position == -1 ? MakeToken(kDiscClass, {}, outToken)
                                           : OSErr(errAENoSuchObject);
}

OSErr FindDrive(DescType inForm, const AEDesc& inData, AEDesc* outToken) {
    if (inForm == DescType(formAbsolutePosition))
        return MakeToken(kDriveClass, sState->DriveAt(PositionFrom(inData)).id, outToken);
    if (inForm == DescType(formName) || inForm == DescType(formUniqueID))
        return MakeToken(kDriveClass, sState->DriveNamed(TextFrom(inData)).id, outToken);
    return errAEBadKeyForm;
}

OSErr FindProperty(const AEDesc& inContainer, DescType inForm, const AEDesc& inData,
                   AEDesc* outToken) {
    if (inForm != DescType(formPropertyID)) return errAEBadKeyForm;
    std::string data = CodeBytes(CodeFrom(inData)) + CodeBytes(inContainer.descriptorType);
    if (inContainer.descriptorType == kDriveClass) data += BytesOf(inContainer);
    return MakeToken(cProperty, data, outToken);
}

OSErr Step(DescType inClass, const AEDesc& inContainer, DescType inForm, const AEDesc& inData,
           AEDesc* outToken) {
    if (inClass == DescType(cProperty)) return FindProperty(inContainer, inForm, inData, outToken);
    return inClass == DescType(kDiscClass) ? FindDisc(inForm, inData, outToken)
                                           : FindDrive(inForm, inData, outToken);
}

OSErr Access(DescType inClass, const AEDesc* inContainer, DescType, DescType inForm,
             const AEDesc* inData, AEDesc* outToken, SInt32) {
    try {
        return Step(inClass, *inContainer, inForm, *inData, outToken);
    } catch (const LException& exception) {
        return OSErr(exception.GetErrorCode());
    } catch (const BurnFailure& failure) {
        return failure.Code() == nsDrvErr ? OSErr(errAENoSuchObject) : OSErr(failure.Code());
    } catch (const std::exception&) {
        return memFullErr;
    }
}

}  // namespace

void InstallObjectAccessors(RecorderState& inState) {
    sState = &inState;
    struct Entry {
        DescType wanted, container;
    };
    for (const Entry& entry :
         {Entry{kDiscClass, typeNull}, Entry{kDriveClass, typeNull}, Entry{cProperty, typeNull},
          Entry{cProperty, kDiscClass}, Entry{cProperty, kDriveClass}})
        ThrowIfError(AEInstallObjectAccessor(entry.wanted, entry.container,
                                             NewOSLAccessorUPP(Access), 0, false));
}

Object ResolveObject(const AEDesc& inSpecifier) {
    if (inSpecifier.descriptorType == DescType(typeNull)) return {};
    StAEDescriptor token;
    const OSErr err = AEResolve(&inSpecifier, kAEIDoMinimum, token);
    if (err == errAEAccessorNotFound) LException::Throw(errAENoSuchObject);
    ThrowIfError(err);
    Object object;
    const std::string data = BytesOf(token);
    object.objectClass = token.mDesc.descriptorType;
    if (object.objectClass == DescType(cProperty)) {
        object.property = CodeAt(data, 0);
        object.objectClass = CodeAt(data, 4);
        object.driveId = data.substr(8);
    } else {
        object.driveId = data;
    }
    if (object.objectClass == DescType(typeNull)) object.objectClass = cApplication;
    return object;
}

}  // namespace recorder
