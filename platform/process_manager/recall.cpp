// Owns the calling of living programs into a new table.
#include "process_manager/recall.h"

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <thread>

#include "posix/local_socket.h"
#include "process_manager/own_process.h"

namespace carbon {
namespace {

constexpr std::chrono::milliseconds kPatience(250);

// Whoever takes the connection looks for the caller in the table, and finds that it is a new one.
bool KnockAt(UInt32 inNumber) {
    UniqueFd socket;
    if (ConnectLocalSocket(SocketPathOf(inNumber), &socket) != 0) return false;
    const auto pid = PeerOfSameUser(socket.Get());
    return pid && *pid != getpid();
}

bool IsOn(const TableLayout& inTable, UInt32 inNumber) {
    return std::any_of(std::begin(inTable.slots), std::end(inTable.slots),
                       [=](const Slot& slot) { return slot.number == inNumber; });
}

}  // namespace

std::vector<UInt32> SocketNumbers(const std::string& inFolder) {
    std::vector<UInt32> numbers;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(inFolder.c_str()), closedir);
    while (const dirent* item = folder ? readdir(folder.get()) : nullptr) {
        char* end = nullptr;
        const unsigned long number = std::strtoul(item->d_name, &end, 16);
        if (std::strcmp(end, ".sock") == 0 && number < 0xFFFF0000u)
            numbers.push_back(UInt32(number));
    }
    return numbers;
}

void Recall(const std::string& inFolder, const TableLayout& inTable) {
    std::vector<UInt32> missing = SocketNumbers(inFolder);
    std::erase_if(missing, [](UInt32 number) { return !KnockAt(number); });
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    for (;;) {
        std::erase_if(missing, [&](UInt32 number) { return IsOn(inTable, number); });
        if (missing.empty() || std::chrono::steady_clock::now() > deadline) return;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

}  // namespace carbon
