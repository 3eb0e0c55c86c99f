// What a property query must do besides the message itself: find the process
// in a process table and look at the application's bundle. Floors for the
// parts and for a whole query.
//
//   lookup [--json] [--seconds S] [--pin P] [--dir DIR] [WHAT...]
//
// WHAT:
//   proc_scan     every numeric folder of the system's process folder, its
//                 "comm" file read (what a look-up without a table costs)
//   table_mmap    16 mapped 512-byte process records, last one matches, its
//                 process is tested with kill(pid, 0)
//   table_dir     the same as 16 files in a folder, listed and read
//   bundle_stat   fstatat of PkgInfo and Info.plist (a validated cache)
//   bundle_read   both opened, read, closed; three keys found by memmem
//   bundle_parse  the same with a GMarkup parse of Info.plist
//   query_cached, query_mmap, query_dir, query_parse
//                 a 64-byte SOCK_SEQPACKET request/reply after: table_mmap +
//                 bundle_stat; table_mmap + bundle_read; table_dir +
//                 bundle_read; table_dir + bundle_parse

#include <dirent.h>
#include <fcntl.h>
#include <glib.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include "bench.h"
#include "child.h"

using namespace bench;

namespace {

struct ProcessRecord {
    uint32_t psn[2];
    uint32_t creator, type;
    int32_t pid;
    char rest[492];
};
static_assert(sizeof(ProcessRecord) == 512);

constexpr uint32_t kCreator = 0x46763856;
constexpr uint32_t kType = 0x4150504C;
constexpr int kProcesses = 16;

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "lookup: %s\n", what);
    std::exit(1);
}

void write_file(const std::string& path, const void* data, size_t size) {
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0 || write(fd, data, size) != static_cast<ssize_t>(size)) die(path.c_str());
    close(fd);
}

size_t read_file(int dir, const char* name, char* buf, size_t size) {
    const int fd = openat(dir, name, O_RDONLY | O_CLOEXEC);
    if (fd < 0) die(name);
    const ssize_t n = read(fd, buf, size);
    if (n < 0) die("read");
    close(fd);
    return static_cast<size_t>(n);
}

std::string sample_plist() {
    std::string s =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"plist.dtd\">\n"
        "<plist version=\"1.0\">\n<dict>\n";
    const char* pairs[][2] = {{"CFBundleDevelopmentRegion", "English"},
                              {"CFBundleExecutable", "recorder"},
                              {"CFBundleGetInfoString", "7.0.1, a disc recorder"},
                              {"CFBundleIconFile", "recorder.icns"},
                              {"CFBundleIdentifier", "example.peer.recorder"},
                              {"CFBundleInfoDictionaryVersion", "6.0"},
                              {"CFBundleName", "Example Calverin"},
                              {"CFBundlePackageType", "APPL"},
                              {"CFBundleShortVersionString", "7.0.1"},
                              {"CFBundleSignature", "Fv8k"},
                              {"CFBundleVersion", "7.0.1"},
                              {"LSMinimumSystemVersion", "10.1"},
                              {"NSMainNibFile", "MainMenu"},
                              {"NSPrincipalClass", "NSApplication"}};
    for (const auto& p : pairs)
        s += std::string("\t<key>") + p[0] + "</key>\n\t<string>" + p[1] + "</string>\n";
    return s + "</dict>\n</plist>\n";
}

class Lookup {
  public:
    explicit Lookup(const std::string& dir) : dir_(dir) {
        mkdir(dir.c_str(), 0755);
        mkdir((dir + "/processes").c_str(), 0755);
        mkdir((dir + "/Recorder.app").c_str(), 0755);
        mkdir((dir + "/Recorder.app/Contents").c_str(), 0755);
        std::vector<ProcessRecord> records(kProcesses);
        for (int i = 0; i < kProcesses; ++i) {
            ProcessRecord& r = records[static_cast<size_t>(i)];
            r = {};
            r.psn[1] = static_cast<uint32_t>(100 + i);
            r.creator = i == kProcesses - 1 ? kCreator : 0x61616161u + static_cast<uint32_t>(i);
            r.type = kType;
            r.pid = getpid();
            write_file(dir + "/processes/" + std::to_string(100 + i), &r, sizeof r);
        }
        write_file(dir + "/table", records.data(), records.size() * sizeof records[0]);
        const std::string plist = sample_plist();
        write_file(dir + "/Recorder.app/Contents/PkgInfo", "APPLFv8k", 8);
        write_file(dir + "/Recorder.app/Contents/Info.plist", plist.data(), plist.size());
        const int fd = open((dir + "/table").c_str(), O_RDONLY | O_CLOEXEC);
        void* p = mmap(nullptr, kProcesses * sizeof(ProcessRecord), PROT_READ, MAP_SHARED, fd, 0);
        if (p == MAP_FAILED) die("mmap");
        close(fd);
        table_ = static_cast<const ProcessRecord*>(p);
        contents_ =
            open((dir + "/Recorder.app/Contents").c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    }

    void proc_scan() {
        DIR* d = opendir("/proc");
        if (d == nullptr) die("opendir");
        int found = 0;
        while (dirent* e = readdir(d)) {
            if (e->d_name[0] < '0' || e->d_name[0] > '9') continue;
            char name[300], buf[64];
            std::snprintf(name, sizeof name, "%s/comm", e->d_name);
            const int fd = openat(dirfd(d), name, O_RDONLY | O_CLOEXEC);
            if (fd < 0) continue;
            if (read(fd, buf, sizeof buf) > 0) ++found;
            close(fd);
        }
        closedir(d);
        if (found == 0) fail("proc_scan");
    }

    void table_mmap() {
        for (int i = 0; i < kProcesses; ++i) {
            const ProcessRecord& r = table_[i];
            if (r.creator == kCreator && r.type == kType && kill(r.pid, 0) == 0) return;
        }
        fail("table_mmap");
    }

    void table_dir() {
        DIR* d = opendir((dir_ + "/processes").c_str());
        if (d == nullptr) die("opendir");
        bool found = false;
        while (dirent* e = readdir(d)) {
            if (e->d_name[0] == '.') continue;
            ProcessRecord r;
            if (read_file(dirfd(d), e->d_name, reinterpret_cast<char*>(&r), sizeof r) != sizeof r)
                continue;
            if (r.creator == kCreator && r.type == kType && kill(r.pid, 0) == 0) found = true;
        }
        closedir(d);
        if (!found) fail("table_dir");
    }

    void bundle_stat() {
        struct stat st;
        if (fstatat(contents_, "PkgInfo", &st, 0) != 0 ||
            fstatat(contents_, "Info.plist", &st, 0) != 0)
            die("bundle_stat");
    }

    void bundle_read() {
        char package[16], plist[8192];
        if (read_file(contents_, "PkgInfo", package, sizeof package) != 8 ||
            std::memcmp(package, "APPLFv8k", 8) != 0)
            fail("PkgInfo");
        const size_t n = read_file(contents_, "Info.plist", plist, sizeof plist);
        for (const char* key :
             {"<key>CFBundleVersion</key>", "<key>CFBundleName</key>", "Calverin"})
            if (memmem(plist, n, key, std::strlen(key)) == nullptr) fail(key);
    }

    void bundle_parse() {
        char package[16], plist[8192];
        if (read_file(contents_, "PkgInfo", package, sizeof package) != 8) fail("PkgInfo");
        const size_t n = read_file(contents_, "Info.plist", plist, sizeof plist);
        struct State {
            std::string key, text;
            int found = 0;
        } state;
        GMarkupParser parser{};
        parser.text = [](GMarkupParseContext*, const char* text, gsize size, void* p, GError**) {
            static_cast<State*>(p)->text.assign(text, size);
        };
        parser.end_element = [](GMarkupParseContext*, const char* element, void* p, GError**) {
            auto* s = static_cast<State*>(p);
            if (std::strcmp(element, "key") == 0)
                s->key = s->text;
            else if (s->key == "CFBundleVersion" || s->key == "CFBundleName") {
                s->found++;
                s->key.clear();
            }
        };
        GMarkupParseContext* c =
            g_markup_parse_context_new(&parser, static_cast<GMarkupParseFlags>(0), &state, nullptr);
        const bool ok = g_markup_parse_context_parse(c, plist, static_cast<gssize>(n), nullptr);
        g_markup_parse_context_free(c);
        if (!ok || state.found != 2) fail("Info.plist");
    }

  private:
    std::string dir_;
    const ProcessRecord* table_ = nullptr;
    int contents_ = -1;
};

}  // namespace

int main(int argc, char** argv) {
    auto args = arguments(argc, argv);
    const double seconds = std::atof(take_option(args, "--seconds", "1").c_str());
    const std::string pin_name = take_option(args, "--pin", "none");
    const Pin pin = pin_from(pin_name);
    const std::string suffix = pin == Pin::none ? "" : "." + pin_name;
    const std::string dir = take_option(args, "--dir", "lookup-data");
    if (args.empty())
        args = {"proc_scan",    "table_mmap",   "table_dir",  "bundle_stat", "bundle_read",
                "bundle_parse", "query_cached", "query_mmap", "query_dir",   "query_parse"};
    pin_client(pin);
    Lookup l(dir);
    int fds[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, fds) != 0) die("socketpair");
    Child server = Child::forked([&] {
        pin_server(pin);
        close(fds[0]);
        char buf[64];
        while (recv(fds[1], buf, sizeof buf, 0) > 0) send(fds[1], buf, sizeof buf, MSG_NOSIGNAL);
    });
    close(fds[1]);
    const auto exchange = [&] {
        char buf[64] = {};
        if (send(fds[0], buf, sizeof buf, MSG_NOSIGNAL) != 64 ||
            recv(fds[0], buf, sizeof buf, 0) != 64)
            die("exchange");
    };
    for (const auto& w : args) {
        const std::string name = "ipc.lookup_" + w + suffix;
        if (w == "proc_scan")
            time_requests(name, seconds, [&] { l.proc_scan(); });
        else if (w == "table_mmap")
            time_requests(name, seconds, [&] { l.table_mmap(); });
        else if (w == "table_dir")
            time_requests(name, seconds, [&] { l.table_dir(); });
        else if (w == "bundle_stat")
            time_requests(name, seconds, [&] { l.bundle_stat(); });
        else if (w == "bundle_read")
            time_requests(name, seconds, [&] { l.bundle_read(); });
        else if (w == "bundle_parse")
            time_requests(name, seconds, [&] { l.bundle_parse(); });
        else if (w == "query_cached")
            time_requests(name, seconds, [&] {
                l.table_mmap();
                l.bundle_stat();
                exchange();
            });
        else if (w == "query_mmap")
            time_requests(name, seconds, [&] {
                l.table_mmap();
                l.bundle_read();
                exchange();
            });
        else if (w == "query_dir")
            time_requests(name, seconds, [&] {
                l.table_dir();
                l.bundle_read();
                exchange();
            });
        else if (w == "query_parse")
            time_requests(name, seconds, [&] {
                l.table_dir();
                l.bundle_parse();
                exchange();
            });
        else {
            std::fprintf(stderr, "unknown part %s\n", w.c_str());
            return 2;
        }
    }
    return 0;
}
