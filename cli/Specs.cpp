// Owns the way from a path to a file spec.
#include "Specs.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "Failure.h"

namespace cli {
namespace {

OSStatus SpecOf(const std::string& inPath, FSSpec* outSpec) {
    FSRef ref;
    const OSStatus status =
        FSPathMakeRef(reinterpret_cast<const UInt8*>(inPath.c_str()), &ref, nullptr);
    if (status != noErr) return status;
    return FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, nullptr, outSpec, nullptr);
}

// Why this path cannot be read, or an empty text.
std::string ReadProblem(const std::string& inPath) {
    if (access(inPath.c_str(), R_OK) == 0) return {};
    return inPath + ": " + std::strerror(errno);
}

}  // namespace

std::vector<FSSpec> SpecsOf(const std::vector<std::string>& inPaths) {
    std::vector<FSSpec> specs;
    std::string problems;
    for (const auto& path : inPaths) {
        std::string problem = ReadProblem(path);
        FSSpec spec = {};
        if (problem.empty()) {
            const OSStatus status = SpecOf(std::filesystem::canonical(path), &spec);
            if (status != noErr) problem = path + ": " + SentenceFor(status);
        }
        if (!problem.empty()) problems += "\n  " + problem;
        specs.push_back(spec);
    }
    if (!problems.empty())
        throw Failure("Nothing was written, because not everything can be read:" + problems, fnfErr,
                      kBadSource);
    return specs;
}

FSSpec SpecFor(const std::string& inPath) {
    FSSpec spec = {};
    const OSStatus status = SpecOf(inPath, &spec);
    if (status != noErr)
        throw Failure(inPath + ": " + SentenceFor(status), status, ExitFor(status));
    return spec;
}

}  // namespace cli
