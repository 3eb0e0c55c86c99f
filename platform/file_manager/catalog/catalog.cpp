// Owns the calls that the other managers make: paths for specs and references and back.
#include "file_manager/catalog/catalog.h"

#include <Carbon/MacErrors.h>

#include "file_manager/catalog/objects.h"

namespace carbon {

OSErr PathFromSpec(const FSSpec& inSpec, std::string* outPath) {
    Object object;
    const OSErr error = Catalog()->FindBySpec(inSpec, &object);
    if (error == noErr || (error == fnfErr && !object.path.empty())) *outPath = object.path;
    return error;
}

OSErr SpecFromPath(const std::string& inPath, FSSpec* outSpec) {
    Object object;
    const OSErr error = Catalog()->FindByPath(inPath, &object);
    if (error == noErr || error == fnfErr) *outSpec = object.spec;
    return error;
}

OSErr PathFromRef(const FSRef& inRef, std::string* outPath) {
    Object object;
    const OSErr error = Catalog()->FindByRef(inRef, &object);
    if (error == noErr) *outPath = object.path;
    return error;
}

OSErr RefFromPath(const std::string& inPath, FSRef* outRef) {
    const Catalog catalog;
    Object object;
    const OSErr error = catalog->FindByPath(inPath, &object);
    if (error == noErr) *outRef = catalog->RefTo(object);
    return error;
}

}  // namespace carbon
