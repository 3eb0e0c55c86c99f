// Owns the form of tokens: 'Disc' without data, 'Driv' with the identifier, or 'prop' with the
// code, the class of its object and that object's data.
#include "handlers/tokens.h"

#include "handlers/Values.h"
#include "vantor/appleevents/MoreAEObjects.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

constexpr size_t kClassAt = sizeof(OSType), kIdentifierAt = kClassAt + sizeof(OSType);

std::string CodeBytes(OSType inCode) {
    const UInt32 code = EndianU32_NtoB(inCode);
    return {reinterpret_cast<const char*>(&code), sizeof code};
}

OSType CodeAt(const std::string& inBytes, size_t inAt) {
    OSType code = 0;
    for (size_t i = 0; i < sizeof code; ++i) code = code << 8 | UInt8(inBytes[inAt + i]);
    return code;
}

// Values that came with an event stand where tokens do, and may claim to be anything.
Object PropertyFrom(const std::string& inData) {
    if (inData.size() < kIdentifierAt) LException::Throw(errAETypeError);
    return {CodeAt(inData, kClassAt), inData.substr(kIdentifierAt), CodeAt(inData, 0)};
}

}  // namespace

void MakeToken(const Object& inObject, StAEDescriptor& outToken) {
    outToken.Dispose();
    const bool isProperty = inObject.property != 0;
    if (!isProperty && inObject.objectClass == DescType(cApplication)) return;
    const std::string data = isProperty ? CodeBytes(inObject.property) +
                                              CodeBytes(inObject.objectClass) + inObject.driveId
                                        : inObject.driveId;
    ThrowIfError(AECreateDesc(isProperty ? DescType(cProperty) : inObject.objectClass, data.data(),
                              Size(data.size()), outToken));
}

Object ObjectFrom(const AEDesc& inToken) {
    const DescType type = inToken.descriptorType;
    if (type == DescType(typeNull)) return {};
    if (type == DescType(cProperty)) return PropertyFrom(BytesOf(inToken));
    if (type != kDiscClass && type != kDriveClass) LException::Throw(errAETypeError);
    return {type, BytesOf(inToken)};
}

void MakeSpecifier(const Object& inObject, StAEDescriptor& outSpecifier) {
    outSpecifier.Dispose();
    StAEDescriptor application, identifier;
    if (inObject.objectClass == kDiscClass)
        ThrowIfError(
            MoreAEOCreateObjSpecifierFormAbsPos(kDiscClass, application, 1, false, outSpecifier));
    if (inObject.objectClass != kDriveClass) return;
    MakeText(inObject.driveId, identifier);
    ThrowIfError(CreateObjSpecifier(kDriveClass, application, formUniqueID, identifier, false,
                                    outSpecifier));
}

}  // namespace recorder
