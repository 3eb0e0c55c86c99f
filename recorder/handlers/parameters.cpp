// Owns the ways in which an event may name files.
#include "handlers/parameters.h"

#include <climits>

#include "handlers/Values.h"
#include "vantor/foundation/LException.h"

namespace recorder {
namespace {

std::string PathFromRef(const FSRef& inRef) {
    std::string path(PATH_MAX, '\0');
    ThrowIfError(FSRefMakePath(&inRef, reinterpret_cast<UInt8*>(path.data()), UInt32(path.size())));
    path.resize(path.find('\0'));
    return path;
}

std::string PathFrom(const AEDesc& inFile) {
    if (inFile.descriptorType == DescType(typeUTF8Text)) return BytesOf(inFile);
    StAEDescriptor reference;
    ThrowIfError(AECoerceDesc(&inFile, typeFSRef, reference));
    FSRef ref;
    ThrowIfError(AEGetDescData(reference, &ref, sizeof ref));
    return PathFromRef(ref);
}

}  // namespace

void Accept(const AppleEvent& inEvent, AEKeyword inKeyword) {
    const StAEDescriptor ignored(inEvent, inKeyword);
    static_cast<void>(ignored);
}

bool OptionalBoolean(const AppleEvent& inEvent, AEKeyword inKeyword, bool inDefault) {
    StAEDescriptor value;
    value.GetOptionalParamDesc(inEvent, inKeyword, typeBoolean);
    return value.mDesc.descriptorType == DescType(typeNull) ? inDefault : BooleanFrom(value);
}

std::vector<std::string> PathsFrom(const AEDesc& inFiles) {
    if (inFiles.descriptorType != DescType(typeAEList)) return {PathFrom(inFiles)};
    SInt32 count = 0;
    ThrowIfError(AECountItems(&inFiles, &count));
    std::vector<std::string> paths;
    for (SInt32 i = 1; i <= count; ++i) {
        StAEDescriptor file;
        ThrowIfError(AEGetNthDesc(&inFiles, i, typeWildCard, nullptr, file));
        paths.push_back(PathFrom(file));
    }
    return paths;
}

}  // namespace recorder
