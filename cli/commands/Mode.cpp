// Owns `vantor mode`: the recorder's server and simulation modes, which last until it quits.
#include <cstdio>

#include "Commands.h"
#include "Failure.h"
#include "Json.h"
#include "vantor/api/Vantor.h"

namespace cli {

void ShowOrSetMode(Mode inMode, std::optional<bool> inOn, bool inJson) {
    const bool server = inMode == Mode::kServer;
    const std::string name = server ? "server" : "simulation";
    if (inOn)
        ThrowIfFailed(server ? VantorSetServerMode(*inOn) : VantorSetSimulationMode(*inOn),
                      "set the " + name + " mode");
    Boolean on = 0;
    ThrowIfFailed(server ? VantorGetServerMode(&on) : VantorGetSimulationMode(&on),
                  "read the " + name + " mode");
    if (inJson)
        PrintJson({{"mode", name}, {"on", on != 0}});
    else
        std::printf("%s mode is %s.\n", server ? "Server" : "Simulation", on ? "on" : "off");
}

}  // namespace cli
