// Owns the holding of burners and what they say about themselves and their discs.
#include "burn/BurnerDrive.h"

#include <algorithm>
#include <array>

#include "burn/BurnerRecording.h"
#include "burn/HeldDrive.h"
#include "burn/libraries.h"

namespace recorder {
namespace {

struct Profile {
    int number;  // as MMC counts them
    SInt32 medium;
};
constexpr std::array<Profile, 15> kProfiles = {{{0x09, kMediumCdR},
                                                {0x0A, kMediumCdRw | kMediumRewritable},
                                                {0x11, kMediumDvdR},
                                                {0x12, kMediumDvdRam | kMediumRewritable},
                                                {0x13, kMediumDvdRw | kMediumRewritable},
                                                {0x14, kMediumDvdRw | kMediumRewritable},
                                                {0x15, kMediumDvdR},
                                                {0x16, kMediumDvdR},
                                                {0x1A, kMediumDvdPlusRw | kMediumRewritable},
                                                {0x1B, kMediumDvdPlusR},
                                                {0x2B, kMediumDvdPlusR},
                                                {0x41, kMediumBdR},
                                                {0x42, kMediumBdR},
                                                {0x43, kMediumBdRe | kMediumRewritable},
                                                {0xFFFF, kMediumImage | kMediumRewritable}}};

SInt32 MediumOfProfile(int inNumber) {
    const auto* found =
        std::find_if(kProfiles.begin(), kProfiles.end(),
                     [&](const Profile& profile) { return profile.number == inNumber; });
    return found == kProfiles.end() ? SInt32(kMediumOther) : found->medium;
}

}  // namespace

HeldDrive::HeldDrive(const std::string& inAddress, bool inLoad) {
    ForgetMessages();
    std::string address = inAddress;
    if (burn::burn_drive_scan_and_grab(&mInfos, address.data(), inLoad ? 1 : 0) != 1) {
        const auto failure = CauseFromMessages();
        const bool isBusy = failure && failure->Code() == fBsyErr;
        throw BurnFailure(
            isBusy ? SInt32(fBsyErr) : SInt32(nsDrvErr),
            inAddress + ": the drive cannot be used" +
                (failure ? std::string(" (") + failure->what() + ")." : std::string(".")));
    }
    mHeld = true;
}

HeldDrive::~HeldDrive() {
    Release(false);
    if (mInfos != nullptr) burn::burn_drive_info_free(mInfos);
}

void HeldDrive::Release(bool inEject) {
    if (mHeld) burn::burn_drive_release(Get(), inEject ? 1 : 0);
    mHeld = false;
}

std::string HeldDrive::Name() const {
    std::string name = std::string(mInfos[0].vendor) + " " + mInfos[0].product;
    name.erase(name.find_last_not_of(' ') + 1);
    return name;
}

bool HeldDrive::IsBlank() const {
    return burn::burn_disc_get_status(Get()) == burn::BURN_DISC_BLANK;
}

SInt32 HeldDrive::MediaInfo() const {
    const auto status = burn::burn_disc_get_status(Get());
    if (status == burn::BURN_DISC_EMPTY || status == burn::BURN_DISC_UNSUITABLE ||
        status == burn::BURN_DISC_UNREADY || status == burn::BURN_DISC_UNGRABBED)
        return 0;
    int profile = 0;
    char name[80];
    if (burn::burn_disc_get_profile(Get(), &profile, name) <= 0) return 0;
    SInt32 info = MediumOfProfile(profile);
    if (status == burn::BURN_DISC_BLANK) info |= kMediumBlank;
    if (status == burn::BURN_DISC_APPENDABLE) info |= kMediumAppendable;
    return info;
}

UInt64 HeldDrive::Space() const {
    return IsBlank() ? UInt64(std::max<off_t>(0, burn::burn_disc_available_space(Get(), nullptr)))
                     : 0;
}

DriveInfo BurnerDrive::Probe() {
    const HeldDrive drive(mAddress, false);
    return {mAddress, drive.Name(), true, drive.MediaInfo(), drive.Space()};
}

bool BurnerDrive::HasBlankDisc() {
    return HeldDrive(mAddress, false).IsBlank();
}

void BurnerDrive::Eject() {
    HeldDrive(mAddress, false).Release(true);
}

std::unique_ptr<Recording> BurnerDrive::Begin(const DiscGoal& inGoal) {
    if (!inGoal.outputPath.empty())
        throw BurnFailure(paramErr, "A burner writes to its disc, not to a file.");
    return std::make_unique<BurnerRecording>(mAddress, inGoal);
}

}  // namespace recorder
