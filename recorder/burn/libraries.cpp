// Owns the start of libburn and libisofs, and the one place where their messages become result
// codes.
#include "burn/libraries.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <libburn/libburn.h>
#include <libisofs/libisofs.h>

namespace recorder {
namespace {

constexpr int kIsoStopped = 0x3FEB2,
              kSourceEnded = 0x20180;  // consequences of a stop, never its cause
constexpr int kCannotOpen = 0x20005, kNoWriteMode = 0x2012B, kWrongMedium = 0x20139;

struct Message {
    int code = 0;
    int error = 0;
    bool grave = false;
    std::string text;
};

bool IsGrave(const char* inSeverity) {
    int severity = 0, mishap = 0;
    burn::burn_text_to_sev(const_cast<char*>(inSeverity), &severity, 0);
    burn::burn_text_to_sev(const_cast<char*>("MISHAP"), &mishap, 0);
    return severity >= mishap;
}

std::vector<Message>& Heard() {
    static std::vector<Message> sHeard;
    return sHeard;
}

void Listen() {
    char text[BURN_MSGS_MESSAGE_LEN], severity[80];
    char lowest[] = "WARNING";
    Message message;
    int image = 0;
    while (burn::burn_msgs_obtain(lowest, &message.code, text, &message.error, severity) == 1)
        Heard().push_back({message.code, message.error, IsGrave(severity), text});
    while (iso_obtain_msgs(lowest, &message.code, &image, text, severity) == 1)
        Heard().push_back({message.code, 0, IsGrave(severity), text});
}

SInt32 CodeFromMessage(const Message& inMessage) {
    if (inMessage.code == kCannotOpen && inMessage.error == EACCES) return permErr;
    if (inMessage.code == kNoWriteMode || inMessage.code == kWrongMedium) return paramErr;
    return inMessage.error != 0 ? CodeFromErrno(inMessage.error) : SInt32(ioErr);
}

}  // namespace

void StartLibraries() {
    if (iso_init() < 0 || burn::burn_initialize() == 0)
        throw BurnFailure(memFullErr, "The disc libraries cannot be started.");
    iso_set_local_charset(const_cast<char*>("UTF-8"), 0);
    burn::burn_allow_drive_role_4(3);
    iso_set_msgs_severities(const_cast<char*>("NOTE"), const_cast<char*>("NEVER"),
                            const_cast<char*>("libisofs : "));
    burn::burn_msgs_set_severities(const_cast<char*>("NOTE"), const_cast<char*>("NEVER"),
                                   const_cast<char*>("libburn : "));
    iso_set_abort_severity(const_cast<char*>("MISHAP"));
}

void FinishLibraries() {
    burn::burn_finish();
    iso_finish();
}

void ForgetMessages() {
    Listen();
    Heard().clear();
}

std::optional<BurnFailure> CauseFromMessages() {
    Listen();
    for (const auto& message : Heard())
        if (message.error != 0 && message.grave)
            return BurnFailure(CodeFromMessage(message), message.text);
    for (const auto& message : Heard())
        if (message.error != 0) return BurnFailure(CodeFromMessage(message), message.text);
    for (const auto& message : Heard())
        if (message.grave && message.code != kIsoStopped && message.code != kSourceEnded)
            return BurnFailure(CodeFromMessage(message), message.text);
    return std::nullopt;
}

}  // namespace recorder
