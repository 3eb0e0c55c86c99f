// Memory shared through a file that somebody else shortens.
#include "posix/shared_memory.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "file_manager/numbers/shared_counter.h"
#include "posix/UniqueFd.h"
#include "support/TemporaryHome.h"

namespace {

using namespace carbon;
namespace fs = std::filesystem;

constexpr size_t kSize = 3 * 4096;
constexpr int kForeignFault = 7;

TemporaryHome gHome;

// Before anything is mapped: what a host does that looks after its own faults.
const bool gHostHandlesFaults = signal(SIGBUS, [](int) { _exit(kForeignFault); }) != SIG_ERR;

class SharedMemory : public testing::Test {
  protected:
    SharedMemory() { Lengthen(); }
    ~SharedMemory() override {
        if (mBytes) UnmapShared(const_cast<char*>(mBytes), kSize);
        fs::remove(mPath);
    }
    void Lengthen() {
        mFile = UniqueFd(open(mPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        EXPECT_EQ(ftruncate(mFile.Get(), kSize), 0);
    }
    void Map(WhenShortened inWhenShortened) {
        mBytes = static_cast<volatile char*>(
            MapShared(mFile.Get(), kSize, inWhenShortened, mPath.string()));
        ASSERT_NE(mBytes, nullptr);
        mBytes[0] = 'a';
        mBytes[kSize - 1] = 'z';
    }
    char InFile(off_t inAt) const {
        char byte = '?';
        EXPECT_EQ(pread(mFile.Get(), &byte, 1, inAt), 1);
        return byte;
    }

    const fs::path mPath = gHome.Root() / "shared";
    UniqueFd mFile;
    volatile char* mBytes = nullptr;
};

TEST_F(SharedMemory, GetsItsFilesLengthBack) {
    Map(WhenShortened::kLengthen);
    fs::resize_file(mPath, 0);
    EXPECT_EQ(mBytes[kSize - 1], 0);
    EXPECT_EQ(fs::file_size(mPath), kSize);
    mBytes[1] = 'b';
    EXPECT_EQ(InFile(1), 'b') << "is shared no more";
}

TEST_F(SharedMemory, WrittenToFirstIsLengthenedToo) {
    Map(WhenShortened::kLengthen);
    fs::resize_file(mPath, 4096);
    mBytes[kSize - 1] = 'y';
    EXPECT_EQ(InFile(kSize - 1), 'y');
    EXPECT_EQ(mBytes[0], 'a');
}

TEST_F(SharedMemory, GoesOnAloneWhereItIsToldTo) {
    Map(WhenShortened::kGoOnAlone);
    fs::resize_file(mPath, 4096);
    EXPECT_EQ(mBytes[kSize - 1], 0);
    EXPECT_EQ(mBytes[0], 0) << "half of what was";
    EXPECT_EQ(fs::file_size(mPath), 4096u);
    mBytes[0] = 'b';
    EXPECT_EQ(InFile(0), 'a');
}

TEST_F(SharedMemory, LeavesAnotherFileOfTheNameAlone) {
    Map(WhenShortened::kLengthen);
    fs::rename(mPath, mPath.string() + ".old");
    { const UniqueFd other(open(mPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)); }
    EXPECT_EQ(ftruncate(mFile.Get(), 0), 0);
    EXPECT_EQ(mBytes[0], 0);
    EXPECT_EQ(fs::file_size(mPath), 0u);
    fs::remove(mPath.string() + ".old");
}

TEST_F(SharedMemory, SomebodyWhoShortensItForEverEndsNobody) {
    Map(WhenShortened::kLengthen);
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(ftruncate(mFile.Get(), 0), 0);
        EXPECT_EQ(mBytes[0], 0);
    }
}

TEST_F(SharedMemory, PlaceOfMemoryThatIsMappedNoMoreIsNobodys) {
    Map(WhenShortened::kGoOnAlone);
    auto* bytes = const_cast<char*>(mBytes);
    UnmapShared(bytes, kSize);
    mBytes = nullptr;
    ASSERT_EQ(mmap(bytes, kSize, PROT_READ, MAP_SHARED | MAP_FIXED, mFile.Get(), 0), bytes);
    EXPECT_EQ(ftruncate(mFile.Get(), 0), 0);
    EXPECT_EXIT(static_cast<void>(*const_cast<volatile char*>(bytes)),
                testing::ExitedWithCode(kForeignFault), "");
    munmap(bytes, kSize);
}

TEST_F(SharedMemory, SignalThatIsNoFaultGoesToTheHost) {
    Map(WhenShortened::kGoOnAlone);
    EXPECT_EXIT(raise(SIGBUS), testing::ExitedWithCode(kForeignFault), "");
}

TEST_F(SharedMemory, CounterWhoseFileIsEmptiedCountsOn) {
    const std::string path = gHome.Root() / "counter";
    SharedCounter counter(path), other(path);
    counter.Increment();
    fs::resize_file(path, 0);
    EXPECT_EQ(counter.Value(), 0u);
    counter.Increment();
    EXPECT_EQ(other.Value(), 1u);
}

}  // namespace
