// Makes a folder tree of files with names, sizes and contents that depend
// only on the arguments.
//
//   mktree DIR [--files N] [--folders M] [--fanout K] [--min B] [--max B]
//          [--seed S] [--tag]
//
// The M folders form a tree in which every folder holds up to K others; the
// files are dealt out to them in turn. One name in 100 contains "report".
// --tag gives every file a 32-byte extended attribute "user.peer.info" (a type
// and a creator code and zeros). Prints the number of bytes in files.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "bench.h"

using namespace bench;

namespace {

class Random {
  public:
    explicit Random(uint64_t seed) : s_(seed * 0x9E3779B97F4A7C15ull + 1) {}
    uint64_t next() {
        s_ ^= s_ << 13;
        s_ ^= s_ >> 7;
        s_ ^= s_ << 17;
        return s_;
    }
    uint64_t between(uint64_t low, uint64_t high) { return low + next() % (high - low + 1); }

  private:
    uint64_t s_;
};

const char* const kWords[] = {"Session", "Track",   "Image",  "Notes",
                              "Budget",  "Archive", "Letter", "Scan"};
const char* const kEndings[] = {"txt", "aiff", "jpg", "doc", "dat"};

}  // namespace

int main(int argc, char** argv) {
    auto args = arguments(argc, argv);
    const bool tag = take_flag(args, "--tag");
    const int files = std::atoi(take_option(args, "--files", "20000").c_str());
    const int folders = std::atoi(take_option(args, "--folders", "400").c_str());
    const int fanout = std::atoi(take_option(args, "--fanout", "12").c_str());
    const uint64_t min = std::strtoull(take_option(args, "--min", "256").c_str(), nullptr, 10);
    const uint64_t max = std::strtoull(take_option(args, "--max", "8192").c_str(), nullptr, 10);
    const uint64_t seed = std::strtoull(take_option(args, "--seed", "1").c_str(), nullptr, 10);
    if (args.size() != 1 || files < 0 || folders < 1 || fanout < 1 || min > max) {
        std::fprintf(stderr, "mktree DIR [--files N] [--folders M] ...\n");
        return 2;
    }
    Random random(seed);
    std::vector<std::string> paths;
    if (mkdir(args[0].c_str(), 0755) != 0) die(args[0].c_str());
    for (int i = 0; i < folders; ++i) {
        const std::string parent = i == 0 ? args[0] : paths[static_cast<size_t>((i - 1) / fanout)];
        paths.push_back(parent + "/Folder " + std::to_string(i));
        if (mkdir(paths.back().c_str(), 0755) != 0) die(paths.back().c_str());
    }
    std::vector<uint64_t> block(1u << 17);  // 1 MiB
    uint64_t bytes = 0;
    for (int i = 0; i < files; ++i) {
        const uint64_t r = random.next();
        const std::string name = std::string(kWords[r % 8]) + (i % 100 == 37 ? " Report " : " ") +
                                 std::to_string(i) + "." + kEndings[(r >> 8) % 5];
        const std::string path = paths[static_cast<size_t>(i % folders)] + "/" + name;
        const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd < 0) die(path.c_str());
        uint64_t left = random.between(min, max);
        bytes += left;
        while (left > 0) {
            const uint64_t n = std::min<uint64_t>(left, block.size() * 8);
            for (uint64_t k = 0; k < (n + 7) / 8; ++k) block[k] = random.next();
            if (write(fd, block.data(), n) != static_cast<ssize_t>(n)) die("write");
            left -= n;
        }
        if (tag) {
            char info[32] = {};
            std::memcpy(info, (r & 1024) ? "TEXTttxt" : "AIFFhook", 8);
            if (fsetxattr(fd, "user.peer.info", info, sizeof info, 0) != 0) die("fsetxattr");
        }
        close(fd);
    }
    std::printf("%llu\n", static_cast<unsigned long long>(bytes));
    return 0;
}
