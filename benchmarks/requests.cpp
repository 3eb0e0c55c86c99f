// What a request of the library costs, with the checks it makes each time: a status query, and
// files added in one event.
//
//   requests [--json] [--seconds S] [--pin same|split|none] [WHAT...]
//
// WHAT: query (the real recorder), query_bare (a receiver that only answers), add_1000, add_100000.
// One iteration is one call of the exported function, the receiver's own work included, or 100,000
// files added with as many calls as that takes; those by the processor's time of both programs.
#include "peers/bench.h"
#include "peers/child.h"
#include "peers/record.h"
#include "vantor/api/Vantor.h"
#include "vantor/process/UProcess.h"
#include "world.h"

using namespace bench;

namespace {

[[noreturn]] void Fail(const char* inWhat, SInt32 inCode) {
    std::fprintf(stderr, "requests: %s: %d\n", inWhat, inCode);
    VantorTerminateSession();
    std::exit(1);
}

// Short work finds a moment in which nobody else uses the machine, long work never: so all that is
// compared with each other takes about as long.
constexpr int kFilesInAll = 100000;

// The same 70 bytes as the peers' entries, in a host's byte order.
std::vector<FSSpec> Specs(int inCount) {
    std::vector<FSSpec> specs;
    for (const Record& record : make_records(inCount)) {
        FSSpec spec;
        std::memcpy(&spec, record.bytes, sizeof spec);
        spec.vRefNum = EndianS16_BtoN(spec.vRefNum);
        spec.parID = EndianS32_BtoN(spec.parID);
        specs.push_back(spec);
    }
    return specs;
}

void Query(const std::string& inName, double inSeconds) {
    time_requests(inName, inSeconds, [] {
        SInt32 code = 0;
        const SInt32 status = VantorGetStatusCode(&code);
        if (status != noErr) Fail("status query", status);
    });
}

pid_t Receiver() {
    const ProcessSerialNumber psn = UProcess::GetPSN('Fv8k', 'APPL');
    pid_t pid = 0;
    if (GetProcessPID(&psn, &pid) != noErr) Fail("finding the receiver", procNotFound);
    return pid;
}

void AddFiles(const std::string& inName, int inCount, double inSeconds) {
    std::vector<FSSpec> specs = Specs(inCount);
    const double total = least_processor_time(inSeconds, 5, Receiver(), [&] {
        for (int added = 0; added < kFilesInAll; added += inCount) {
            const SInt32 status = VantorAddFiles(specs.data(), inCount);
            if (status != noErr) Fail("adding files", status);
        }
    });
    emit(inName + ".processor", total / 1e6, "ms");
}

void Measure(const std::string& inWhat, const std::string& inSuffix, double inSeconds) {
    World world(inWhat != "query");
    const SInt32 status = VantorInitiateSession();
    if (status != noErr) Fail("opening a session", status);
    const std::string name = "ours." + inWhat + inSuffix;
    if (inWhat.rfind("add_", 0) == 0)
        AddFiles(name, std::atoi(inWhat.c_str() + 4), inSeconds);
    else
        Query(name, inSeconds);
    VantorTerminateSession();
}

}  // namespace

int main(int inCount, char** inWords) {
    auto words = arguments(inCount, inWords);
    const double seconds = std::atof(take_option(words, "--seconds", "1").c_str());
    const std::string pin = take_option(words, "--pin", "none");
    const std::string suffix = pin == "none" ? "" : "." + pin;
    pin_client(pin_from(pin));
    if (words.empty()) words = {"query", "query_bare", "add_1000", "add_100000"};
    // Each in a process of its own: the environment of a world is read once.
    for (const auto& what : words) {
        Child child = Child::forked([&] {
            Measure(what, suffix, seconds);
            std::fflush(stdout);
        });
        int status = 0;
        if (waitpid(child.pid(), &status, 0) < 0 || status != 0) return 1;
    }
    return 0;
}
