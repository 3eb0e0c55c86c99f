// Owns the checks before a launch.
#include "process_manager/launchable.h"

#include <Carbon/LSInfo.h>
#include <Carbon/MacErrors.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "core_foundation/internal.h"
#include "file_manager/catalog/catalog.h"
#include "posix/os_err.h"

namespace carbon {
namespace {

constexpr mode_t kAnyExecute = S_IXUSR | S_IXGRP | S_IXOTH;

bool IsApplicationType(OSType inType) {
    return inType == 'APPL' || inType == 'appe' || inType == 'FNDR';
}

OSErr CheckPermission(const std::string& inExecutable) {
    if (access(inExecutable.c_str(), X_OK) == 0) return noErr;
    return errno == ENOENT ? OSErr(kLSNoExecutableErr) : OSErr(kLSNoLaunchPermissionErr);
}

OSErr FromBundle(const std::string& inPath, Program* outProgram) {
    const auto facts = FactsOfBundle(inPath);
    const bool fits = facts != nullptr && facts->isPackage && IsApplicationType(facts->type);
    if (!fits) return kLSNotAnApplicationErr;
    *outProgram = ProgramOfBundle(inPath);
    return outProgram->executable.empty() ? OSErr(kLSNoExecutableErr)
                                          : CheckPermission(outProgram->executable);
}

// A file that nobody may execute is a document, not a forbidden program.
OSErr FromFile(const std::string& inPath, const struct stat& inFacts, Program* outProgram) {
    const bool fits = S_ISREG(inFacts.st_mode) && (inFacts.st_mode & kAnyExecute) != 0;
    if (!fits) return kLSNotAnApplicationErr;
    *outProgram = ProgramOfExecutable(inPath);
    return CheckPermission(outProgram->executable);
}

}  // namespace

OSErr LaunchableFromSpec(const FSSpec& inSpec, Program* outProgram) {
    std::string path;
    const OSErr err = PathFromSpec(inSpec, &path);
    if (err != noErr) return err;
    struct stat facts;
    if (stat(path.c_str(), &facts) != 0) return OSErrFromErrno(errno);
    return S_ISDIR(facts.st_mode) ? FromBundle(path, outProgram)
                                  : FromFile(path, facts, outProgram);
}

}  // namespace carbon
