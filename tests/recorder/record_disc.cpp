// One disc by the recorder's engine alone, without Apple Events: what the writing itself costs.
//
//   record_disc [--hybrid] [--no-verify] [--simulate] OUT PATH...
//
// One iteration is one whole job: walk, write with checksums, force to the disk, read back, name.
// Prints its phases.
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <thread>

#include "burn/BurnEngine.h"

namespace {

using Clock = std::chrono::steady_clock;

const char* Name(recorder::Phase inPhase) {
    static const std::map<recorder::Phase, const char*> kNames = {
        {recorder::Phase::Preparing, "preparing"},
        {recorder::Phase::Writing, "writing"},
        {recorder::Phase::Verifying, "verifying"},
        {recorder::Phase::Closing, "closing"}};
    const auto found = kNames.find(inPhase);
    return found == kNames.end() ? "ended" : found->second;
}

int Run(recorder::BurnRequest& inRequest) {
    recorder::SystemDrives drives;
    recorder::BurnEngine engine(drives);
    inRequest.driveId = drives.Identifiers().back();
    const auto start = Clock::now();
    std::map<recorder::Phase, double> seconds;
    engine.Start(inRequest);
    for (auto last = start; engine.Busy();) {
        const auto phase = engine.Progress().phase;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const auto now = Clock::now();
        seconds[phase] += std::chrono::duration<double>(now - last).count();
        last = now;
    }
    const auto end = engine.Progress();
    for (const auto& [phase, time] : seconds) std::printf("record.%s %.3f s\n", Name(phase), time);
    std::printf("record.wall %.3f s\n",
                std::chrono::duration<double>(Clock::now() - start).count());
    std::fprintf(stderr, "%s\n", end.text.c_str());
    return end.status == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    recorder::BurnRequest request;
    for (int i = 1; i < argc; ++i) {
        const auto path = std::filesystem::absolute(argv[i]).lexically_normal();
        if (std::strcmp(argv[i], "--hybrid") == 0)
            request.hfsPlus = true;
        else if (std::strcmp(argv[i], "--no-verify") == 0)
            request.verify = false;
        else if (std::strcmp(argv[i], "--simulate") == 0)
            request.goal.simulate = true;
        else if (request.goal.outputPath.empty())
            request.goal.outputPath = path;
        else
            request.paths.push_back(path);
    }
    if (request.paths.empty()) {
        std::fprintf(stderr, "record_disc [--hybrid] [--no-verify] [--simulate] OUT PATH...\n");
        return 2;
    }
    return Run(request);
}
