// What a request of the library costs, with the checks it makes each time: a status query, and
// files added in one event.
//
//   requests [--json] [--seconds S] [--pin same|split|none] [WHAT...]
//
// WHAT: query (the real recorder), query_bare (a receiver that only answers), add_1000, add_100000.
// One iteration is one call of the exported function, the receiver's own work included.
#include <sys/stat.h>

#include <filesystem>

#include "peers/bench.h"
#include "peers/child.h"
#include "peers/record.h"
#include "vantor/api/Vantor.h"

using namespace bench;

namespace {

[[noreturn]] void Fail(const char* inWhat, SInt32 inCode) {
    std::fprintf(stderr, "requests: %s: %d\n", inWhat, inCode);
    VantorTerminateSession();
    std::exit(1);
}

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

void AddFiles(const std::string& inName, int inCount, double inSeconds) {
    std::vector<FSSpec> specs = Specs(inCount);
    const double total = median_time(inSeconds, 5, [&] {
        const SInt32 status = VantorAddFiles(specs.data(), inCount);
        if (status != noErr) Fail("adding files", status);
    });
    emit(inName + ".total", total / 1e6, "ms");
}

// A user's world of its own, in which the newest recorder is the one wanted.
class World {
  public:
    explicit World(bool inReceiver) {
        std::string pattern = "/tmp/vantor-bench-XXXXXX";
        mRoot = mkdtemp(pattern.data());
        const auto applications = mRoot / "data/vantor/Applications";
        std::filesystem::create_directories(applications);
        const auto here = std::filesystem::read_symlink("/proc/self/exe").parent_path();
        if (inReceiver)
            std::filesystem::create_directory_symlink(here / "../receiver/Calverin.app",
                                                      applications / "Receiver.app");
        for (const char* folder : {"run", "state"})
            std::filesystem::create_directory(mRoot / folder);
        std::filesystem::permissions(mRoot / "run", std::filesystem::perms::owner_all);
        setenv("XDG_DATA_HOME", (mRoot / "data").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", (mRoot / "run").c_str(), 1);
        setenv("XDG_STATE_HOME", (mRoot / "state").c_str(), 1);
    }
    ~World() {
        std::error_code ignored;
        std::filesystem::remove_all(mRoot, ignored);
    }

  private:
    std::filesystem::path mRoot;
};

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
