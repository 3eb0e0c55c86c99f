// The writing of an image to a disk that fails under it.
#include "burn/ImageRecording.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "recorder/EngineTest.h"

using namespace recorder;

namespace {

bool gRefusesDirect = false;
int gErrorOfPush = 0;  // of the wait for what was pushed; 0: no error

}  // namespace

extern "C" ssize_t pwrite(int inFile, const void* inData, size_t inSize, off_t inOffset) {
    if (gRefusesDirect && (fcntl(inFile, F_GETFL) & O_DIRECT) != 0) return errno = EINVAL, -1;
    return syscall(SYS_pwrite64, inFile, inData, inSize, inOffset);
}

extern "C" int sync_file_range(int inFile, off_t inOffset, off_t inSize, unsigned inHow) {
    if (gErrorOfPush != 0 && (inHow & SYNC_FILE_RANGE_WAIT_AFTER) != 0)
        return errno = gErrorOfPush, -1;
    return int(syscall(SYS_sync_file_range, inFile, inOffset, inSize, inHow));
}

namespace {

class Bytes : public ImageStream {
  public:
    UInt64 Size() const override { return 40u << 20; }
    void Read(UInt8* outData, size_t inSize) override { std::memset(outData, 'x', inSize); }
};

class ImageRecordings : public EngineTest {
  protected:
    ImageRecordings() { gRefusesDirect = true; }
    ~ImageRecordings() override {
        gRefusesDirect = false;
        gErrorOfPush = 0;
    }
    SInt32 CodeOfWriting() {
        const std::atomic<bool> stop = false;
        JobProgress progress;
        Bytes bytes;
        try {
            ImageRecording recording({mRoot / "none", mImage}, false, 0);
            recording.Reserve(bytes.Size());
            recording.Write(bytes, {progress, stop});
            recording.Finish();
            return noErr;
        } catch (const BurnFailure& failure) {
            return failure.Code();
        }
    }
};

TEST_F(ImageRecordings, GoThroughTheCacheWhereTheDiskTakesNothingElse) {
    EXPECT_EQ(CodeOfWriting(), noErr);
    EXPECT_EQ(fs::file_size(mImage), Bytes().Size());
}

// The fsync at the end does not tell of it a second time.
TEST_F(ImageRecordings, EndWithTheErrorThatIsHeardInTheMiddle) {
    gErrorOfPush = EIO;
    EXPECT_EQ(CodeOfWriting(), ioErr);
    EXPECT_FALSE(fs::exists(mImage));
    gErrorOfPush = ENOSPC;
    EXPECT_EQ(CodeOfWriting(), dskFulErr);
    EXPECT_FALSE(fs::exists(mImage));
}

TEST_F(ImageRecordings, DoNotNeedThePushing) {
    gErrorOfPush = ENOSYS;
    EXPECT_EQ(CodeOfWriting(), noErr);
}

}  // namespace
