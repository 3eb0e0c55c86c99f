// Owns the course of one burn: the stream handed to libburn, its options, and the wait for its end.
#include "burn/BurnerRecording.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <thread>
#include <vector>

#include "burn/libraries.h"

namespace recorder {
namespace {

constexpr int kSector = 2048;
constexpr int kTailBytes =
    150 * kSector;  // of CDs: drives read ahead over the end of their last track
constexpr auto kPollInterval = std::chrono::milliseconds(20);
constexpr int kReasonsLength = 4096;  // BURN_REASONS_LEN

// Our stream as libburn reads it, a sector at a time on its own thread.
class SectorSource {
  public:
    explicit SectorSource(ImageStream& inStream)
        : mStream(inStream), mLeft(inStream.Size()), mChunk(Recording::kChunk) {}

    // libburn frees what this returns; `this` outlives it.
    burn::burn_source* Make() {
        auto* source = static_cast<burn::burn_source*>(std::calloc(1, sizeof(burn::burn_source)));
        if (source == nullptr) throw BurnFailure(memFullErr, "There is not enough memory.");
        source->refcount = 1;
        source->version = 1;
        source->data = this;
        source->get_size = [](burn::burn_source* s) { return off_t(Self(s)->mStream.Size()); };
        source->set_size = [](burn::burn_source*, off_t) { return 1; };
        source->free_data = [](burn::burn_source*) {};
        source->read_xt = [](burn::burn_source* s, unsigned char* out, int size) {
            return Self(s)->Read(out, size);
        };
        source->cancel = [](burn::burn_source*) { return 1; };
        return source;
    }
    void Rethrow() const {
        if (mFailure) std::rethrow_exception(mFailure);
    }

  private:
    static SectorSource* Self(burn::burn_source* inSource) {
        return static_cast<SectorSource*>(inSource->data);
    }

    int Read(unsigned char* outData, int inSize) {
        if (mUsed == mHave && !Refill()) return mFailure ? -1 : 0;
        const size_t count = std::min(size_t(inSize), mHave - mUsed);
        std::memcpy(outData, mChunk.data() + mUsed, count);
        mUsed += count;
        return int(count);
    }
    bool Refill() {
        mHave = size_t(std::min<UInt64>(mChunk.size(), mLeft));
        mUsed = 0;
        mLeft -= mHave;
        try {
            if (mHave != 0) mStream.Read(mChunk.data(), mHave);
        } catch (...) {
            mFailure = std::current_exception();
            mHave = 0;
        }
        return mHave != 0;
    }

    ImageStream& mStream;
    UInt64 mLeft;
    std::vector<UInt8> mChunk;
    size_t mHave = 0, mUsed = 0;
    std::exception_ptr mFailure;
};

// The plan of a disc with one session of one track.
class Plan {
  public:
    Plan(SectorSource& inSource, int inTailBytes)
        : mDisc(burn::burn_disc_create()),
          mSession(burn::burn_session_create()),
          mTrack(burn::burn_track_create()) {
        burn::burn_disc_add_session(mDisc, mSession, BURN_POS_END);
        burn::burn_track_define_data(mTrack, 0, inTailBytes, 0, BURN_MODE1);
        burn::burn_session_add_track(mSession, mTrack, BURN_POS_END);
        burn::burn_source* source = inSource.Make();
        burn::burn_track_set_source(mTrack, source);
        burn::burn_source_free(source);
    }
    ~Plan() {
        burn::burn_track_free(mTrack);
        burn::burn_session_free(mSession);
        burn::burn_disc_free(mDisc);
    }
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;
    burn::burn_disc* Get() const { return mDisc; }

  private:
    burn::burn_disc* mDisc;
    burn::burn_session* mSession;
    burn::burn_track* mTrack;
};

struct FreeOptions {
    void operator()(burn::burn_write_opts* inOptions) const {
        burn::burn_write_opts_free(inOptions);
    }
};
using Options = std::unique_ptr<burn::burn_write_opts, FreeOptions>;

Options MakeOptions(burn::burn_drive* inDrive, burn::burn_disc* inDisc, bool inSimulate) {
    Options options(burn::burn_write_opts_new(inDrive));
    burn::burn_write_opts_set_simulate(options.get(), inSimulate ? 1 : 0);
    burn::burn_write_opts_set_multi(options.get(), 0);  // nothing is appended later
    burn::burn_write_opts_set_underrun_proof(options.get(), 1);
    burn::burn_write_opts_set_stdio_fsync(options.get(), 1);
    burn::burn_drive_set_speed(inDrive, 0, 0);  // as fast as drive and disc can
    char reasons[kReasonsLength] = "";
    if (burn::burn_write_opts_auto_write_type(options.get(), inDisc, reasons, 0) ==
            burn::BURN_WRITE_NONE ||
        burn::burn_precheck_write(options.get(), inDisc, reasons, 0) <= 0)
        throw BurnFailure(paramErr, std::string("This disc cannot be written: ") + reasons + ".");
    return options;
}

bool CanSimulate(burn::burn_drive* inDrive) {
    burn::burn_multi_caps* abilities = nullptr;
    if (burn::burn_disc_get_multi_caps(inDrive, burn::BURN_WRITE_NONE, &abilities, 0) <= 0)
        return false;
    const bool able = abilities->might_simulate != 0;
    burn::burn_disc_free_multi_caps(&abilities);
    return able;
}

}  // namespace

BurnerRecording::BurnerRecording(const std::string& inAddress, const DiscGoal& inGoal)
    : mDrive(inAddress, true), mGoal(inGoal) {
    if (mDrive.MediaInfo() == 0)
        throw BurnFailure(kNoDiscErr, "There is no disc in " + inAddress + ".");
    if (!mDrive.IsBlank())
        throw BurnFailure(kNoDiscErr, "The disc in " + inAddress + " is not blank.");
    if (mGoal.simulate && !CanSimulate(mDrive.Get()))
        throw BurnFailure(paramErr, "The drive cannot simulate with this kind of disc.");
}

int BurnerRecording::TailBytes() const {
    const SInt32 kind = mDrive.MediaInfo() & 0xFF;
    return kind == kMediumCdR || kind == kMediumCdRw ? kTailBytes : 0;
}

void BurnerRecording::Reserve(UInt64 inBytes) {
    const UInt64 space = mDrive.Space();
    if (inBytes + UInt64(TailBytes()) > space)
        throw BurnFailure(dskFulErr, "The disc holds " + std::to_string(space / 1'000'000) +
                                         " MB, " + std::to_string(inBytes / 1'000'000) +
                                         " MB are needed.");
}

// A cancel that comes while libburn is still starting is lost there, so it is repeated at every
// turn.
void BurnerRecording::WaitUntilIdle(const JobContext& inContext) {
    burn::burn_progress progress = {};
    for (;;) {
        const auto status = burn::burn_drive_get_status(mDrive.Get(), &progress);
        if (status == burn::BURN_DRIVE_IDLE) return;
        if (inContext.stop.load()) burn::burn_drive_cancel(mDrive.Get());
        if (status == burn::BURN_DRIVE_WRITING_LEADOUT ||
            status == burn::BURN_DRIVE_CLOSING_TRACK || status == burn::BURN_DRIVE_CLOSING_SESSION)
            inContext.progress.Doing("the drive is closing the disc");
        std::this_thread::sleep_for(kPollInterval);
    }
}

void BurnerRecording::Write(ImageStream& inStream, const JobContext& inContext) {
    SectorSource source(inStream);
    const Plan plan(source, TailBytes());
    ForgetMessages();
    const Options options = MakeOptions(mDrive.Get(), plan.Get(), mGoal.simulate);
    burn::burn_disc_write(options.get(), plan.Get());
    WaitUntilIdle(inContext);
    inContext.CheckStop();
    source.Rethrow();
    if (const auto failure = CauseFromMessages()) throw *failure;
    if (burn::burn_drive_wrote_well(mDrive.Get()) == 0)
        throw BurnFailure(ioErr, "The drive did not write the disc well, and does not say why.");
}

void BurnerRecording::PrepareReadBack() {
    burn::burn_drive_re_assess(mDrive.Get(), 0);
}

void BurnerRecording::ReadBack(UInt64 inOffset, UInt8* outData, size_t inSize) {
    constexpr size_t kMost = 32 * kSector;
    for (size_t done = 0; done < inSize;) {
        const size_t wanted = std::min(kMost, inSize - done);
        off_t count = 0;
        const int result =
            burn::burn_read_data(mDrive.Get(), off_t(inOffset + done),
                                 reinterpret_cast<char*>(outData) + done, off_t(wanted), &count, 0);
        if (result <= 0 || count != off_t(wanted))
            throw BurnFailure(dataVerErr, "The disc cannot be read back at block " +
                                              std::to_string((inOffset + done) / kSector) + ".");
        done += wanted;
    }
}

std::string BurnerRecording::Finish() {
    mDrive.Release(mGoal.eject);
    return {};
}

}  // namespace recorder
