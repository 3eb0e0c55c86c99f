// sd-bus (libsystemd): property Get with a 4-byte answer, a method with two
// numbers and a text, and one with a list of 70-byte entries ("aay").
//
//   dbus-run-session -- sdbus [--json] [--seconds S] [--pin P] [WHAT...]
//
// WHAT: bus_get, peer_get, peer_method, bus_list_1000, bus_list_100000, peer_list_1000,
// peer_list_100000. "bus" goes through the session's dbus-daemon, "peer" is a
// socket pair between the two processes without a daemon.

#include <sys/socket.h>
#include <systemd/sd-bus.h>

#include "bench.h"
#include "child.h"
#include "record.h"

using namespace bench;

namespace {

constexpr char kName[] = "peer.bench.Sdbus";
constexpr char kPath[] = "/disc/1";
constexpr char kInterface[] = "peer.bench.Disc";

void check(int r, const char* what) {
    if (r >= 0) return;
    std::fprintf(stderr, "%s: %s\n", what, std::strerror(-r));
    std::exit(1);
}

int get_code(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
             sd_bus_error*) {
    return sd_bus_message_append(reply, "i", 42);
}

int add(sd_bus_message* m, void*, sd_bus_error*) {
    int32_t first, second;
    const char* text;
    check(sd_bus_message_read(m, "iis", &first, &second, &text), "read");
    return sd_bus_reply_method_return(m, "i", first + second + static_cast<int32_t>(text[0]));
}

int add_files(sd_bus_message* m, void*, sd_bus_error*) {
    uint32_t sum = 0;
    check(sd_bus_message_enter_container(m, 'a', "ay"), "enter");
    const void* data;
    size_t size;
    int r;
    while ((r = sd_bus_message_read_array(m, 'y', &data, &size)) > 0)
        sum = touch_record(static_cast<const uint8_t*>(data), sum);
    check(r, "read_array");
    check(sd_bus_message_exit_container(m), "exit");
    return sd_bus_reply_method_return(m, "i", static_cast<int32_t>(sum));
}

const sd_bus_vtable kVtable[] = {
    SD_BUS_VTABLE_START(0), SD_BUS_PROPERTY("Code", "i", get_code, 0, 0),
    SD_BUS_METHOD("Add", "iis", "i", add, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("AddFiles", "aay", "i", add_files, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END};

sd_bus* peer_bus(int fd, bool server) {
    sd_bus* bus = nullptr;
    check(sd_bus_new(&bus), "new");
    check(sd_bus_set_fd(bus, fd, fd), "set_fd");
    if (server) {
        sd_id128_t id{};
        id.bytes[0] = 1;
        check(sd_bus_set_server(bus, 1, id), "set_server");
    }
    check(sd_bus_set_anonymous(bus, 1), "anonymous");
    check(sd_bus_set_trusted(bus, 1), "trusted");
    check(sd_bus_start(bus), "start");
    return bus;
}

void serve(int peer_fd) {
    sd_bus* bus = nullptr;
    if (peer_fd >= 0)
        bus = peer_bus(peer_fd, true);
    else
        check(sd_bus_open_user(&bus), "open");
    check(sd_bus_add_object_vtable(bus, nullptr, kPath, kInterface, kVtable, nullptr), "vtable");
    if (peer_fd < 0) check(sd_bus_request_name(bus, kName, 0), "request_name");
    for (;;) {
        const int r = sd_bus_process(bus, nullptr);
        if (r < 0) return;
        if (r == 0 && sd_bus_wait(bus, UINT64_MAX) < 0) return;
    }
}

// Waits until the service owns its name.
void wait_for_name(sd_bus* bus) {
    for (int i = 0; i < 500; ++i) {
        if (sd_bus_get_name_creds(bus, kName, 0, nullptr) >= 0) return;
        usleep(10000);
    }
    std::fprintf(stderr, "no service\n");
    std::exit(1);
}

void get(sd_bus* bus, const char* dest, const std::string& name, double seconds) {
    time_requests(name, seconds, [&] {
        int32_t code = 0;
        check(
            sd_bus_get_property_trivial(bus, dest, kPath, kInterface, "Code", nullptr, 'i', &code),
            "get_property");
        if (code != 42) std::exit(1);
    });
}

// Also what of it the serving process takes of the processor.
void method(sd_bus* bus, const char* dest, const std::string& name, double seconds, pid_t server) {
    time_handling(name, seconds, server, [&] {
        sd_bus_message* reply = nullptr;
        check(sd_bus_call_method(bus, dest, kPath, kInterface, "Add", nullptr, &reply, "iis", 40,
                                 -63, "A track"),
              "call");
        int32_t sum = 0;
        check(sd_bus_message_read(reply, "i", &sum), "read");
        if (sum != 42) std::exit(1);
        sd_bus_message_unref(reply);
    });
}

void list(sd_bus* bus, const char* dest, const std::string& name, int count, double seconds,
          pid_t server) {
    const auto records = make_records(count);
    uint32_t expected = 0;
    for (const auto& r : records) expected = touch_record(r.bytes, expected);
    Samples build(1024);
    const double total = least_processor_time(seconds, 5, server, [&] {
        const uint64_t t = now_ns();
        sd_bus_message* m = nullptr;
        check(sd_bus_message_new_method_call(bus, &m, dest, kPath, kInterface, "AddFiles"),
              "new call");
        check(sd_bus_message_open_container(m, 'a', "ay"), "open");
        for (const auto& r : records)
            check(sd_bus_message_append_array(m, 'y', r.bytes, sizeof r.bytes), "append");
        check(sd_bus_message_close_container(m), "close");
        build.add(now_ns() - t);
        sd_bus_message* reply = nullptr;
        check(sd_bus_call(bus, m, 60u * 1000000u, nullptr, &reply), "call");
        int32_t sum = 0;
        check(sd_bus_message_read(reply, "i", &sum), "read");
        if (static_cast<uint32_t>(sum) != expected) {
            std::fprintf(stderr, "bad sum\n");
            std::exit(1);
        }
        sd_bus_message_unref(reply);
        sd_bus_message_unref(m);
    });
    emit(name + ".build", build.median_ns() / 1e6, "ms");
    emit(name + ".processor", total / 1e6, "ms");
}

}  // namespace

int main(int argc, char** argv) {
    auto args = arguments(argc, argv);
    const int serve_fd = std::atoi(take_option(args, "--fd", "-1").c_str());
    if (take_flag(args, "--serve")) {
        serve(serve_fd);
        return 0;
    }
    const double seconds = std::atof(take_option(args, "--seconds", "1").c_str());
    const std::string pin_name = take_option(args, "--pin", "none");
    const Pin pin = pin_from(pin_name);
    const std::string suffix = pin == Pin::none ? "" : "." + pin_name;
    if (args.empty())
        args = {"bus_get",         "peer_get",       "bus_list_1000",
                "bus_list_100000", "peer_list_1000", "peer_list_100000"};
    pin_client(pin);
    for (const auto& what : args) {
        const bool peer = what.rfind("peer_", 0) == 0;
        const size_t digits = what.rfind('_') + 1;
        const int count = std::atoi(what.c_str() + digits);
        int fds[2] = {-1, -1};
        sd_bus* bus = nullptr;
        std::vector<std::string> child_args = {"--serve"};
        if (peer) {
            if (socketpair(AF_UNIX, SOCK_STREAM, 0, fds) != 0) die("socketpair");
            fcntl(fds[0], F_SETFD, FD_CLOEXEC);
            child_args.insert(child_args.end(), {"--fd", std::to_string(fds[1])});
        }
        Child server = Child::self(child_args, pin);
        if (peer) {
            close(fds[1]);
            bus = peer_bus(fds[0], false);
        } else {
            check(sd_bus_open_user(&bus), "open");
            wait_for_name(bus);
        }
        const char* dest = peer ? nullptr : kName;
        const std::string name = "ipc.sdbus_" + what + suffix;
        if (what == "peer_method")
            method(bus, dest, name, seconds, server.pid());
        else if (count > 0)
            list(bus, dest, name, count, seconds, server.pid());
        else
            get(bus, dest, name, seconds);
        sd_bus_close_unref(bus);
    }
    return 0;
}
