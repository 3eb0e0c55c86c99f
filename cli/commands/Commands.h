// One function for each word of the command line. They print their result and throw a Failure when
// it cannot be had.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace cli {

struct BurnRequest {
    std::vector<std::string> files;
    std::string
        target;  // an image file to make, or a device; empty: the recorder's own drive decides
    std::string volumeName;
    std::string kind = "data";
    bool simulate = false;
    bool verify = true;
    std::optional<bool> eject;  // not said: eject a device, leave an image drive alone
    bool replace = false;
    bool json = false;
};

void Burn(const BurnRequest& inRequest);

void ShowStatus(bool inJson);
void ShowMedia(bool inJson);
void ShowDrives(bool inJson);
void ShowProcesses(bool inJson);

void RequestBlank(bool inJson);
void Eject(bool inJson);

enum class Mode { kServer, kSimulation };

// Without `inOn` only tells how the mode stands.
void ShowOrSetMode(Mode inMode, std::optional<bool> inOn, bool inJson);

}  // namespace cli
