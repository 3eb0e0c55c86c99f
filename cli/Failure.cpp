// Owns the sentences for result codes.
#include "Failure.h"

#include <array>

namespace cli {
namespace {

// The recorder's, see docs/recorder-dictionary.md.
constexpr SInt32 kNoDiscErr = -65;

struct Meaning {
    SInt32 code;
    const char* sentence;
    ExitStatus exit;
};

constexpr auto kMeanings = std::to_array<Meaning>({
    {-11000, "something unforeseen failed inside the library", kFailed},
    {-11001, "no recorder was found on this system", kNoRecorder},
    {-11002, "a recorder was found, but it is too old or not the one this library drives",
     kNoRecorder},
    {kLSApplicationNotFoundErr,
     "no recorder is installed: no application with signature 'Fv8k' in the Applications folders",
     kNoRecorder},
    {kLSExecutableIncorrectFormat, "the recorder's program cannot be run on this machine",
     kNoRecorder},
    {kLSNoExecutableErr, "the recorder's bundle holds no program", kNoRecorder},
    {kLSNoLaunchPermissionErr, "the recorder's program may not be run by you", kNoRecorder},
    {procNotFound, "the recorder is not running", kFailed},
    {connectionInvalid, "the recorder ended before it answered", kFailed},
    {errAETimeout, "the recorder did not answer in time", kFailed},
    {errAEWaitCanceled, "the wait for the recorder was interrupted", kInterrupted},
    {errAEEventNotHandled, "the recorder does not understand this request", kFailed},
    {errAENoSuchObject, "the recorder knows no such object", kFailed},
    {errAECantHandleClass, "the recorder cannot make this kind of disc", kBadUsage},
    {userCanceledErr, "cancelled", kInterrupted},
    {fnfErr, "a file does not exist", kBadSource},
    {dirNFErr, "a folder does not exist", kBadSource},
    {dupFNErr, "a file of that name is there already", kFailed},
    {bdNamErr, "a name is not one the disc can hold", kBadSource},
    {afpAccessDenied, "access was refused", kBadSource},
    {permErr, "access was refused", kFailed},
    {dskFulErr, "there is not enough space", kFailed},
    {ioErr, "reading or writing failed", kFailed},
    {fBsyErr, "the recorder is busy with another disc", kFailed},
    {wPrErr, "the target cannot be written to", kFailed},
    {nsDrvErr, "there is no such drive", kFailed},
    {kNoDiscErr, "there is no blank disc in the drive", kFailed},
    {dataVerErr, "the disc read back differs from what was written", kNotVerified},
    {paramErr, "the recorder refused a value", kFailed},
    {memFullErr, "there is not enough memory", kFailed},
});

const Meaning* Find(SInt32 inCode) {
    for (const auto& meaning : kMeanings)
        if (meaning.code == inCode) return &meaning;
    return nullptr;
}

}  // namespace

std::string SentenceFor(SInt32 inCode) {
    const Meaning* meaning = Find(inCode);
    return meaning != nullptr ? meaning->sentence : "the request failed";
}

ExitStatus ExitFor(SInt32 inCode) {
    const Meaning* meaning = Find(inCode);
    return meaning != nullptr ? meaning->exit : kFailed;
}

void ThrowIfFailed(SInt32 inCode, const std::string& inDoing) {
    if (inCode != noErr)
        throw Failure("Could not " + inDoing + ": " + SentenceFor(inCode) + ".", inCode,
                      ExitFor(inCode));
}

}  // namespace cli
