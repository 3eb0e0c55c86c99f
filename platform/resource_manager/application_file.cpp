// Owns finding the program's own resources: in its bundle, else beside its file.
#include "resource_manager/application_file.h"

#include <Carbon/MacErrors.h>

#include "core_foundation/bundles/bundle_layout.h"
#include "file_manager/catalog/object_status.h"
#include "file_manager/metadata/metadata.h"
#include "process_manager/identity.h"

namespace carbon {

std::optional<ApplicationFile> FindApplicationFile() {
    const Program program = OwnProgram();
    if (!program.bundle.empty()) {
        const std::string folder = LayoutOfBundle(program.bundle).resources;
        const std::string path = PathInFolder(folder, LeafOfPath(program.executable) + ".rsrc");
        if (IsPlainFile(path)) return ApplicationFile{path, ForkKind::kData};
    }
    Metadata metadata;
    if (ReadMetadata(program.executable, &metadata) != noErr) return std::nullopt;
    if (metadata.facts.resourceLength == 0) return std::nullopt;
    return ApplicationFile{program.executable, ForkKind::kResource};
}

}  // namespace carbon
